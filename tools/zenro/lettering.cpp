#include "tools/zenro/lettering.h"

#include <cmath>
#include <cstring>

#include "runtime/gbk.h"
#include "zenromath/dwg.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1;
constexpr int kRecording = 3;
constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kWideClass = 0.8;  // width to height from which a class's width is that of a Chinese character

constexpr double kNarrowSpare = 0.15;  // of a one-byte character's width, beside Chinese

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
    if (TqDC->GetTqDCType() != kDwg || lettering.layer.empty()) return;
    std::vector<char> layer = Writable(lettering.layer);
    _LDBsetlay(layer.data());
}

// One run of text where it was measured to stand. textRout keeps level text off the frame; what it decides is what a
// recording gets too, which textRout itself leaves out.
void DrawRun(std::vector<char>& text, double x, double y, bool level) {
    if (!level) {
        TqDC->textout(x, y, text.data(), 0, 0);
        return;
    }
    if (TqDC->textRout(x, y, text.data(), 0) == 0) return;
    if (TqDC->GetTqDCType() == kRecording) TqDC->textout(x, y, text.data(), 0, 0);
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
    return (characters() + (spare > 0.0 ? characters() * spare : 0.0)) * width;
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
            runs.push_back({{}, wide || !wideClass ? lettering.width : lettering.width / 2.0});
        lastWide = wide;
        runs.back().text.append(gbk, i, two ? 2 : 1);
        i += two ? 2 : 1;
    }
    // Digits are wider than the average character by which a font is stretched.
    if (runs.size() > 1 && wideClass)
        for (Run& run : runs)
            if (!gbk::IsLead(run.text.front())) run.spare = kNarrowSpare;
    return runs;
}

double LengthOf(const std::vector<Run>& runs) {
    double length = 0.0;
    for (const Run& run : runs) length += run.length();
    return length;
}

void DrawRuns(const std::vector<Run>& runs, const Lettering& lettering, double x, double y, double degrees) {
    const double c = std::cos(degrees * kDegree), s = std::sin(degrees * kDegree);
    const bool level = runs.size() == 1 && std::fabs(degrees) < 1e-4;
    for (const Run& run : runs) {
        CTQFont font(lettering.height, run.width, lettering.fontNumber, degrees, 0);
        font._settextcolor(lettering.color);
        SelectNoteLayer(lettering);
        std::vector<char> text = Writable(run.text);
        DrawRun(text, x, y, level);
        x += run.length() * c;
        y += run.length() * s;
    }
}

void DrawSpread(const std::string& gbk, const Lettering& lettering, const std::vector<PP>& spots) {
    CTQFont font(lettering.height, lettering.width, lettering.fontNumber, 0.0, 0);
    font._settextcolor(lettering.color);
    SelectNoteLayer(lettering);
    std::size_t at = 0;
    for (const PP& spot : spots) {
        if (at >= gbk.size()) return;
        const std::size_t bytes = gbk::IsLead(gbk[at]) && at + 1 < gbk.size() ? 2 : 1;
        std::vector<char> character = Writable(gbk.substr(at, bytes));
        TqDC->textout(spot.x, spot.y, character.data(), 0, 0);
        at += bytes;
    }
}

}  // namespace zm::tool
