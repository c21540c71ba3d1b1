// The commands of a recording: texts of fields parted by colons, reals with six decimals and a point in every locale.
#include <charconv>
#include <cstring>
#include <initializer_list>
#include <string>

#include "draw/access.h"
#include "draw/numbers.h"
#include "draw/state.h"
#include "draw/stroke/sinks.h"
#include "runtime/text/numbers.h"

namespace zm::draw::sink::record {
namespace {

constexpr int kDecimals = 6;
constexpr std::size_t kRealSize = 320 + kDecimals;  // of the largest double with its decimals

// A command of a name and reals, as printf's "%.6lf" would print them.
void AddReals(CTqDraw& dc, const char* name, std::initializer_list<double> values) {
    char text[6 * kRealSize];
    std::size_t length = std::strlen(name);
    std::memcpy(text, name, length);
    for (const double value : values) {
        text[length++] = ':';
        length = static_cast<std::size_t>(
            std::to_chars(text + length, text + sizeof text - 1, value, std::chars_format::fixed, kDecimals).ptr -
            text);
    }
    text[length] = '\0';
    Access::Commands(dc).Add(text);
}

void Add(CTqDraw& dc, const std::string& text) {
    Access::Commands(dc).Add(text.c_str());
}

// "%ld" of a colour prints a signed number of 32 bits.
int Signed(DWORD colour) {
    return static_cast<int>(static_cast<std::uint32_t>(colour));
}

}  // namespace

int Line(CTqDraw& dc, double x1, double y1, double x2, double y2) {
    if (!AllFinite(x1, y1, x2, y2)) return 0;
    AddReals(dc, "Line2", {x1, y1, x2, y2});
    return 1;
}

void Point(CTqDraw& dc, double x, double y, DWORD colour) {
    if (AllFinite(x, y)) Add(dc, numbers::Text("Pixel:%.6lf:%.6lf:%d", x, y, Signed(colour)));
}

void Arc(CTqDraw& dc, double cx, double cy, double r, double a0, double a1) {
    if (!AllFinite(cx, cy, r, a0, a1)) return;
    AddReals(dc, "Arc", {cx, cy, r, a0 * kDegreesPerRadian, a1 * kDegreesPerRadian});
}

int Text(CTqDraw& dc, double x, double y, const char* s) {
    if (!AllFinite(x, y)) return 0;
    Add(dc, numbers::Text("Text:%d:%.6lf:%.6lf:%.2lf:", state().firstCharacter, x, y, Access::TextHeight(dc)) + s);
    return 1;
}

void PolylineStart(CTqDraw& dc) {
    Access::Commands(dc).Add("PlineBgn");
}
void PolylineEnd(CTqDraw& dc) {
    Access::Commands(dc).Add("PlineEnd");
}

void Layer(CTqDraw& dc, int layer) {
    Add(dc, numbers::Text("Layer:%d", layer));
}

void Pen(CTqDraw& dc, int style, int width, DWORD colour) {
    Add(dc, numbers::Text("Pen:%d:%d:%d", style, width, Signed(colour)));
}

void Font(CTqDraw& dc, const tagLOGFONTA& font) {
    // The face is printed as far as its field goes.
    const std::string face(font.lfFaceName, strnlen(font.lfFaceName, sizeof font.lfFaceName));
    Add(dc, numbers::Text("Font:%ld:%ld:%ld:%ld:%ld:%d:%d:%d:%d:%d:%d:%d:%d:%s", static_cast<long>(font.lfHeight),
                          static_cast<long>(font.lfWidth), static_cast<long>(font.lfEscapement),
                          static_cast<long>(font.lfOrientation), static_cast<long>(font.lfWeight), font.lfItalic,
                          font.lfUnderline, font.lfStrikeOut, font.lfCharSet, font.lfOutPrecision, font.lfClipPrecision,
                          font.lfQuality, font.lfPitchAndFamily, face.c_str()));
}

}  // namespace zm::draw::sink::record
