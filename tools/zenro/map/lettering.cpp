#include "tools/zenro/map/lettering.h"

#include <cmath>
#include <cstring>

#include "draw/device.h"
#include "platform/device/faces.h"
#include "runtime/text/gbk.h"
#include "tools/kit/angles.h"
#include "tools/zenro/map/drawing_look.h"
#include "tools/zenro/map/recording.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1;
constexpr int kMonochrome = 2;
constexpr int kRecording = 3;
constexpr double kWideClass = 0.8;  // width to height from which a class's width is that of a Chinese character

constexpr double kNarrow = 0.65;  // the width of a digit in a wide class, as a part of the class's

// The letters with tone marks that the code page has.
bool IsAccentedLetter(char lead, char trail) {
    const auto t = static_cast<unsigned char>(trail);
    return static_cast<unsigned char>(lead) == 0xA8 && t >= 0xA1 && t <= 0xC0;
}

std::vector<char> Writable(const std::string& text) {
    return std::vector<char>(text.c_str(), text.c_str() + text.size() + 1);
}

// The layer of the note class, in a DWG file; elsewhere the pen's layer is all there is.
void SelectNoteLayer(const Lettering& lettering) {
    if (TqDC->GetTqDCType() == kDwg && !lettering.layer.empty()) SelectDrawingLayer(lettering.layer, lettering.color);
}

bool IsFull(const std::string& text) {
    return !text.empty() && static_cast<unsigned char>(text.front()) >= 0x80;
}

TextLook LookOf(const Lettering& lettering, double width, double degrees) {
    TqNoteLayBase* notes = GetTqNoteLayBasePt();
    const NOTEFONT* font = notes != nullptr ? notes->GetFontInfo(lettering.fontNumber) : nullptr;
    TextLook look{{}, lettering.height, width, degrees, false};
    if (font == nullptr) return look;
    look.face = font->screenFont;
    look.italic = font->slant == 2;
    return look;
}

// A text of one kind in a lettering, its top left corner at (x, y).
void DrawPiece(const std::string& piece, const Lettering& lettering, double width, double x, double y, double degrees) {
    const int type = TqDC->GetTqDCType();
    std::vector<char> text = Writable(piece);
    if (type == kRecording) TellTextLook(lettering.height, width, PaletteColour(lettering.color));
    if (type == kDwg || type == kRecording) {
        CTQFont font(lettering.height, width, lettering.fontNumber, degrees, 0);
        font._settextcolor(lettering.color);
        SelectNoteLayer(lettering);
        TqDC->textout(x, y, text.data(), 0, 0);
        return;
    }
    const COLORREF colour = type == kMonochrome ? 0 : PaletteColour(lettering.color);
    const COLORREF before = device::SetTextColor(TqDC->GetHdc(), colour);
    DrawOnDevice(piece, LookOf(lettering, width, degrees), x, y);
    device::SetTextColor(TqDC->GetHdc(), before);
}

}  // namespace

Lettering LetteringOf(TqNoteLayBase& notes, char note) {
    Lettering l;
    l.fontNumber = notes.Fontn(note);
    l.height = _To01mm(notes.CharH(note));
    l.width = _To01mm(notes.CharW(note));
    l.interval = _To01mm(notes.CharI(note));
    l.color = notes.Color(note);
    l.layer = notes.LayerName(note);
    l.shown = notes.OutDcDwg(note) != 0;
    return l;
}

int Run::characters() const {
    int high = 0;
    for (const char c : text) high += static_cast<unsigned char>(c) >= 0x80 ? 1 : 0;
    return static_cast<int>(text.size()) - high / 2;
}

double Run::length() const {
    return characters() * width;
}

std::vector<Run> RunsOf(const std::string& gbk, const Lettering& lettering) {
    const bool wideClass = lettering.width >= kWideClass * lettering.height;
    std::vector<Run> runs;
    bool lastWide = false;
    for (std::size_t i = 0; i < gbk.size();) {
        const bool two = gbk::IsLead(gbk[i]) && i + 1 < gbk.size();
        // An accented letter stays in its word. A run never begins with one: its first byte decides on the font.
        const bool wide = two && !(IsAccentedLetter(gbk[i], gbk[i + 1]) && !runs.empty() && !lastWide);
        if (runs.empty() || wide != lastWide)
            runs.push_back({{}, wide || !wideClass ? lettering.width : lettering.width * kNarrow});
        lastWide = wide;
        runs.back().text.append(gbk, i, two ? 2 : 1);
        i += two ? 2 : 1;
    }
    return runs;
}

double LengthOf(const std::vector<Run>& runs) {
    double length = 0.0;
    for (const Run& run : runs) length += run.length();
    return length;
}

void DrawRuns(const std::vector<Run>& runs, const Lettering& lettering, double x, double y, double degrees) {
    const double c = std::cos(degrees * kDegree), s = std::sin(degrees * kDegree);
    for (const Run& run : runs) {
        DrawPiece(run.text, lettering, run.width, x, y, degrees);
        x += run.length() * c;
        y += run.length() * s;
    }
}

void DrawSpread(const std::string& gbk, const Lettering& lettering, const std::vector<Spot>& spots) {
    std::size_t at = 0;
    for (const Spot& spot : spots) {
        if (at >= gbk.size()) return;
        const std::size_t bytes = gbk::IsLead(gbk[at]) && at + 1 < gbk.size() ? 2 : 1;
        DrawPiece(gbk.substr(at, bytes), lettering, lettering.width, spot.x, spot.y, spot.degrees);
        at += bytes;
    }
}

// The cell of a face hangs from the top left corner that it is given. It is made so high that capitals, or the square
// of a full character, have the wanted height, and hung so that they stand where a drawing has them.
void DrawOnDevice(const std::string& gbk, const TextLook& look, double x, double y) {
    const platform::Face& face = platform::FaceOf(look.face);
    const bool full = IsFull(gbk);
    const double size = full ? look.height : look.height / face.capital;
    const double base = full ? platform::kIdeographDrop * size : 0.0;  // of the base line above the foot of the text
    const double up = base + face.ascent * size - look.height;         // of the cell's top above (x, y)
    const double width = full ? look.width : look.width * face.averageWidth / face.digitWidth;
    const double a = look.degrees * kDegree;
    std::vector<char> name = Writable(look.face), text = Writable(gbk);
    HFONT before = nullptr;
    HFONT font = TqDC->SetFont(size * face.cell(), width, name.data(), look.degrees, look.italic ? 255 : 0, before);
    // Whether it is drawn is decided by its own corner, as on other outputs, not by that of the cell.
    if (TqDC->cutpoint(x, y) != 0) {
        const int cut = TqDC->SetDoCut(0);
        TqDC->textout(x - up * std::sin(a), y + up * std::cos(a), text.data(), 0, 0);
        TqDC->SetDoCut(cut);
    }
    TqDC->ResetFont(before);
    device::DeleteObject(font);
}

}  // namespace zm::tool
