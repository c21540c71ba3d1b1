#include "tools/zenro/map/margins.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>

#include "tools/kit/exit_codes.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"
#include "tools/zenro/map/map_pen.h"
#include "zenromath/draw.h"
#include "zenromath/runtime.h"

namespace zm::tool {
namespace {

// Millimetres of paper.
constexpr double kGap = 3.0;  // between the outer frame and what is above it
constexpr double kTitleHeight = 6.0, kNumberHeight = 4.5, kScaleHeight = 4.0, kNoteHeight = 2.8, kSecrecyHeight = 3.5,
                 kUnitHeight = 3.5;
constexpr double kNoteStep = 4.6;   // from line to line of the notes
constexpr double kFirstNote = 5.0;  // below the outer frame
constexpr double kCellWidth = 15.0, kCellHeight = 8.0, kCellText = 2.2;
constexpr double kHatch = 1.5;  // between the lines of the middle cell
constexpr double kEdge = 3.0;   // of paper beyond everything
constexpr double kArrowHeight = 15.0;
constexpr std::size_t kMostBytes = 1u << 20;

enum class Key {
    title,
    number,
    system,
    heightSystem,
    interval,
    symbols,
    survey,
    remark,
    secrecy,
    unit,
    surveyor,
    draughtsman,
    checker,
    adjoining,
    barScale,
    outerWidth,
    neighbour
};

struct Name {
    const char* text;
    Key key;
    int neighbour = 0;
};

constexpr Name kNames[] = {
    {"title", Key::title},
    {"图名", Key::title},
    {"number", Key::number},
    {"图号", Key::number},
    {"system", Key::system},
    {"坐标系统", Key::system},
    {"坐标系", Key::system},
    {"height_system", Key::heightSystem},
    {"高程系统", Key::heightSystem},
    {"高程基准", Key::heightSystem},
    {"interval", Key::interval},
    {"等高距", Key::interval},
    {"symbols", Key::symbols},
    {"图式", Key::symbols},
    {"survey", Key::survey},
    {"测绘说明", Key::survey},
    {"测图日期", Key::survey},
    {"remark", Key::remark},
    {"附注", Key::remark},
    {"secrecy", Key::secrecy},
    {"密级", Key::secrecy},
    {"unit", Key::unit},
    {"测绘单位", Key::unit},
    {"测绘机关", Key::unit},
    {"surveyor", Key::surveyor},
    {"测量员", Key::surveyor},
    {"draughtsman", Key::draughtsman},
    {"绘图员", Key::draughtsman},
    {"checker", Key::checker},
    {"检查员", Key::checker},
    {"adjoining", Key::adjoining},
    {"接图表", Key::adjoining},
    {"bar_scale", Key::barScale},
    {"图解比例尺", Key::barScale},
    {"outer_frame", Key::outerWidth},
    {"外图廓线宽", Key::outerWidth},
    {"north_west", Key::neighbour, 0},
    {"西北", Key::neighbour, 0},
    {"north", Key::neighbour, 1},
    {"北", Key::neighbour, 1},
    {"north_east", Key::neighbour, 2},
    {"东北", Key::neighbour, 2},
    {"west", Key::neighbour, 3},
    {"西", Key::neighbour, 3},
    {"east", Key::neighbour, 4},
    {"东", Key::neighbour, 4},
    {"south_west", Key::neighbour, 5},
    {"西南", Key::neighbour, 5},
    {"south", Key::neighbour, 6},
    {"南", Key::neighbour, 6},
    {"south_east", Key::neighbour, 7},
    {"东南", Key::neighbour, 7},
};

// A line of the file, for messages.
struct Line {
    std::string file;
    int number;
    [[noreturn]] void Fail(const std::string& what) const {
        throw Failure(kUsage, file + ":" + std::to_string(number) + ": " + what);
    }
};

bool Switch(const std::string& key, const std::string& value, const Line& at) {
    if (value == "yes" || value == "是" || value == "1") return true;
    if (value == "no" || value == "否" || value == "0") return false;
    at.Fail(Phrase("\"{0}\" needs yes or no (是, 否), not \"{1}\".", key, value));
}

double Width(const std::string& key, const std::string& value, const Line& at) {
    double width = 0.0;
    if (!ReadReal(value, width) || !(width >= 0.1) || width > 3.0)
        at.Fail(Phrase("\"{0}\" needs millimetres from 0.1 to 3, not \"{1}\".", key, value));
    return width;
}

void Set(FrameTexts& t, const Name& name, const std::string& key, const std::string& value, const Line& at) {
    switch (name.key) {
        case Key::title:
            t.title = value;
            break;
        case Key::number:
            t.number = value;
            break;
        case Key::system:
            t.system = value;
            break;
        case Key::heightSystem:
            t.heightSystem = value;
            break;
        case Key::interval:
            t.interval = value;
            break;
        case Key::symbols:
            t.symbols = value;
            break;
        case Key::survey:
            t.survey = value;
            break;
        case Key::remark:
            t.remark = value;
            break;
        case Key::secrecy:
            t.secrecy = value;
            break;
        case Key::unit:
            t.unit = value;
            break;
        case Key::surveyor:
            t.surveyor = value;
            break;
        case Key::draughtsman:
            t.draughtsman = value;
            break;
        case Key::checker:
            t.checker = value;
            break;
        case Key::adjoining:
            t.adjoining = Switch(key, value, at);
            break;
        case Key::barScale:
            t.barScale = Switch(key, value, at);
            break;
        case Key::outerWidth:
            t.outerWidth = Width(key, value, at);
            break;
        case Key::neighbour:
            t.neighbours[static_cast<std::size_t>(name.neighbour)] = value;
            t.adjoining = true;
            break;
    }
}

// The notes at the lower left, in the order of printed sheets.
std::vector<std::string> NotesOf(const FrameTexts& t) {
    std::vector<std::string> lines;
    for (const std::string& line : {t.survey, t.system})
        if (!line.empty()) lines.push_back(line);
    std::string heights = t.heightSystem;
    if (!t.interval.empty()) heights += (heights.empty() ? "等高距为" : "，等高距为") + t.interval + "。";
    if (!heights.empty()) lines.push_back(heights);
    if (!t.symbols.empty()) lines.push_back(t.symbols);
    return lines;
}

std::vector<std::string> PersonsOf(const FrameTexts& t) {
    std::vector<std::string> lines;
    const std::pair<const char*, const std::string*> persons[] = {
        {"测量员 ", &t.surveyor}, {"绘图员 ", &t.draughtsman}, {"检查员 ", &t.checker}};
    for (const auto& [title, name] : persons)
        if (!name->empty()) lines.push_back(title + *name);
    return lines;
}

// The numbers of the sheets around a sheet that is numbered by its corner.
std::array<std::string, 8> NumbersAround(const Page& page) {
    std::array<std::string, 8> numbers;
    if (page.graticule) return page.graticule->neighbours;
    if (page.rotation != 0.0) return numbers;
    const double w = page.sheet.x2 - page.sheet.x1, h = page.sheet.y2 - page.sheet.y1;
    std::size_t i = 0;
    for (const int row : {1, 0, -1})
        for (const int column : {-1, 0, 1}) {
            if (row == 0 && column == 0) continue;
            Page other = page;
            other.sheet = {page.sheet.x1 + column * w, page.sheet.y1 + row * h, page.sheet.x2 + column * w,
                           page.sheet.y2 + row * h};
            numbers[i++] = SheetNumber(other);
        }
    return numbers;
}

// Three by three cells above the left corner, the middle one hatched.
void DrawAdjoining(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes, double left, double bottom) {
    const double w = page.Ground(kCellWidth), h = page.Ground(kCellHeight);
    const bool named = std::any_of(texts.neighbours.begin(), texts.neighbours.end(),
                                   [](const std::string& name) { return !name.empty(); });
    const std::array<std::string, 8> cells = named ? texts.neighbours : NumbersAround(page);
    {
        const WidthPen pen(page, 0.2, FrameCode());
        DrawRectangle(left, bottom, left + 3 * w, bottom + 3 * h);
    }
    const WidthPen pen(page, 0.15, FrameCode());
    for (const int i : {1, 2}) {
        TqDC->line(left + i * w, bottom, left + i * w, bottom + 3 * h);
        TqDC->line(left, bottom + i * h, left + 3 * w, bottom + i * h);
    }
    std::size_t cell = 0;
    for (const int row : {2, 1, 0})
        for (const int column : {0, 1, 2}) {
            if (row == 1 && column == 1) continue;
            const std::string& name = cells[cell++];
            const double room = kCellWidth - 1.0, narrow = 0.65 * static_cast<double>(name.size());
            if (!name.empty())
                PutText(page, notes, name, std::min(kCellText, room / narrow), left + (column + 0.5) * w,
                        bottom + (row + 0.5) * h, Align::centre);
        }
    // Lines at 45 degrees: x - y = k step, from edge to edge of the middle cell.
    const double x1 = left + w, y1 = bottom + h, step = page.Ground(kHatch) * std::sqrt(2.0);
    for (double k = -h + step / 2; k < w; k += step) {
        const double from = std::max(0.0, k), to = std::min(w, k + h);
        if (to > from) TqDC->line(x1 + from, y1 + from - k, x1 + to, y1 + to - k);
    }
}

// Metres of a part of the bar scale.
double PartOf(double scale) {
    for (const double part : {5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 500.0, 1000.0, 2000.0, 5000.0})
        if (part / scale * 1000.0 >= 18.0) return part;
    return scale * 0.02;
}

// One part left of zero in fifths, four right of it.
void DrawBarScale(const Page& page, TqNoteLayBase& notes, double middle, double top) {
    const double part = PartOf(page.scale), height = page.Ground(1.5), left = middle - 1.5 * part;
    const WidthPen pen(page, kNeatWidth, FrameCode());
    DrawRectangle(left - part, top - height, left + 4 * part, top);
    TqDC->line(left - part, top - height / 2, left + 4 * part, top - height / 2);
    for (int i = -4; i <= 3; ++i) {
        const double x = i <= 0 ? left + i * part / 5 : left + i * part;
        TqDC->line(x, top - height, x, top);
    }
    for (int i = -1; i <= 4; ++i)
        PutText(page, notes, Fixed(std::fabs(i * part), 0) + (i == 4 ? " m" : ""), 2.0, left + i * part,
                top - height - page.Ground(2.0), Align::centre);
}

// Characters upright from the top down, the last one at the lower end of the frame.
void DrawUnit(const Page& page, TqNoteLayBase& notes, const std::string& unit, double x, double bottom) {
    std::vector<std::string> characters;
    for (std::size_t i = 0; i < unit.size();) {
        const auto lead = static_cast<unsigned char>(unit[i]);
        const std::size_t bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        characters.push_back(unit.substr(i, bytes));
        i += bytes;
    }
    const double step = page.Ground(kUnitHeight * 1.25);
    double y = bottom + step * (static_cast<double>(characters.size()) - 0.5);
    for (const std::string& one : characters) {
        PutText(page, notes, one, kUnitHeight, x, y, Align::centre);
        y -= step;
    }
}

// A slim arrow, its right half dark, in the upper right of a map that is turned on its sheet.
void DrawNorthArrow(const Page& page, TqNoteLayBase& notes) {
    const double h = page.Ground(kArrowHeight), w = h * 0.16;
    const double cx = page.sheet.x2 + page.Ground(kOuterFrame) - h * 0.7;
    const double cy = page.sheet.y2 + page.Ground(kOuterFrame + kGap) + h / 2;
    const double a = page.rotation * 3.141592653589793 / 180.0, c = std::cos(a), s = std::sin(a);
    const auto at = [&](double u, double v) { return PP{cx + u * c - v * s, cy + u * s + v * c}; };
    const auto stroke = [&](PP p, PP q) { TqDC->line(p.x, p.y, q.x, q.y); };
    const PP top = at(0, h / 2), foot = at(0, -h / 2 + h * 0.14), left = at(-w, -h / 2), right = at(w, -h / 2);
    const WidthPen pen(page, kNeatWidth, FrameCode());
    stroke(top, left);
    stroke(left, foot);
    stroke(foot, right);
    stroke(right, top);
    const int shades = static_cast<int>(kArrowHeight * 0.16 / (kNeatWidth * 0.7)) + 1;  // no paper between them
    for (int i = 0; i < shades; ++i) {
        const double t = static_cast<double>(i) / shades;
        stroke(top, PP{foot.x + (right.x - foot.x) * t, foot.y + (right.y - foot.y) * t});
    }
    const PP north = at(0, h / 2 + page.Ground(2.4));
    PutText(page, notes, "北", 3.0, north.x, north.y, Align::centre, page.rotation);
}

// 1:500, 1:1 000, 1:10 000
std::string ScaleText(double scale) {
    std::string digits = Fixed(scale, 0);
    for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), 1, ' ');
    return "1:" + digits;
}

}  // namespace

void ReadMargins(const std::filesystem::path& path, FrameTexts& texts) {
    std::istringstream lines(ReadWholeFile(path, kMostBytes));
    std::string raw;
    std::set<std::string> seen;
    for (int number = 1; std::getline(lines, raw); ++number) {
        if (number == 1 && raw.compare(0, 3, "\xEF\xBB\xBF") == 0) raw.erase(0, 3);
        const Line at{path.string(), number};
        const std::string line = Trim(raw);
        if (line.empty() || line[0] == '#') continue;
        const std::size_t equal = line.find('=');
        if (equal == std::string::npos) at.Fail(Phrase("a line is KEY = VALUE, such as \"title = Riverside\"."));
        const std::string key = Trim(line.substr(0, equal)), value = Trim(line.substr(equal + 1));
        const Name* found = nullptr;
        for (const Name& name : kNames)
            if (key == name.text) found = &name;
        if (found == nullptr)
            at.Fail(Phrase("\"{0}\" is no item of the margins; docs/zenro/margins.md lists them.", key));
        if (!seen.insert(key).second) at.Fail(Phrase("\"{0}\" is there twice.", key));
        Set(texts, *found, key, value, at);
    }
}

Margins MarginsFor(const FrameTexts& texts) {
    Margins m;
    const double frame = kOuterFrame + texts.outerWidth;
    m.top = frame + kGap + kNumberHeight + kGap + kTitleHeight + kEdge;
    if (texts.adjoining) m.top = std::max(m.top, frame + kGap + 3 * kCellHeight + kEdge);
    const auto lines = std::max({NotesOf(texts).size(), PersonsOf(texts).size() + (texts.remark.empty() ? 0 : 1),
                                 texts.barScale ? std::size_t{3} : std::size_t{1}});
    m.bottom = frame + kFirstNote + kNoteStep * static_cast<double>(lines) + kEdge;
    m.left = frame + (texts.unit.empty() ? kEdge + 5.0 : 4.0 + kUnitHeight + kEdge);
    m.right = frame + kEdge + 5.0;
    return m;
}

std::string SheetNumber(const Page& page) {
    if (page.rotation != 0.0) return {};
    const int decimals = KilometreDecimals(page);
    // "10.0-21.0"; what is below zero, as in a local system, is in brackets: "(-0.1)-21.0".
    const auto part = [&](double metres) {
        const std::string text = Kilometres(metres, decimals, true);
        return text.front() == '-' ? "(" + text + ")" : text;
    };
    return part(page.sheet.y1) + "-" + part(std::fmod(page.sheet.x1, kZone));
}

void DrawMargins(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes) {
    const Box& b = page.sheet;
    const double out = page.Ground(kOuterFrame + texts.outerWidth), middle = (b.x1 + b.x2) / 2;
    const double left = b.x1 - out, right = b.x2 + out, top = b.y2 + out, bottom = b.y1 - out;
    const WidthPen pen(page, kNeatWidth, FrameCode());
    const std::string number = texts.number.empty() ? SheetNumber(page) : texts.number;
    const double up = number.empty() ? 0.0 : kNumberHeight + kGap;
    PutText(page, notes, number, kNumberHeight, middle, top + page.Ground(kGap + kNumberHeight / 2), Align::centre);
    PutText(page, notes, texts.title, kTitleHeight, middle, top + page.Ground(kGap + up + kTitleHeight / 2),
            Align::centre);
    if (texts.adjoining) DrawAdjoining(page, texts, notes, left, top + page.Ground(kGap));
    if (!texts.secrecy.empty())
        PutText(page, notes, texts.secrecy, kSecrecyHeight, right, top + page.Ground(kGap + kSecrecyHeight / 2),
                Align::right);
    if (!texts.unit.empty()) DrawUnit(page, notes, texts.unit, left - page.Ground(4.0 + kUnitHeight / 2), bottom);
    const double first = bottom - page.Ground(kFirstNote + kNoteHeight / 2 - 1.0), step = page.Ground(kNoteStep);
    PutText(page, notes, ScaleText(page.scale), kScaleHeight, middle, first, Align::centre);
    if (texts.barScale) DrawBarScale(page, notes, middle, first - page.Ground(5.0));
    double y = first;
    for (const std::string& line : NotesOf(texts)) {
        PutText(page, notes, line, kNoteHeight, left, y, Align::left);
        y -= step;
    }
    y = first;
    std::vector<std::string> lower = PersonsOf(texts);
    if (!texts.remark.empty()) lower.insert(lower.begin(), texts.remark);
    for (const std::string& line : lower) {
        PutText(page, notes, line, kNoteHeight, right, y, Align::right);
        y -= step;
    }
    if (page.rotation != 0.0) DrawNorthArrow(page, notes);
}

}  // namespace zm::tool
