// Text records: placing by justification, vertical text with Chinese characters, and the forms for numbers.
#include <cmath>
#include <cstring>
#include <string>

#include "dwg/format/degrees.h"
#include "dwg/texts.h"
#include "dwg/writer/entity.h"
#include "dwg/writer/writer.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

// The current style as its record has it.
class Style {
 public:
    explicit Style(Session& session) : m_record(session.tables().Slot(Table::style, state().now.style)) {}
    std::uint8_t flag() const { return m_record[0]; }
    double width() const { return LoadReal(m_record + style_record::kWidth); }
    double oblique() const { return LoadReal(m_record + style_record::kOblique); }
    unsigned generation() const { return m_record[style_record::kGeneration]; }

 private:
    const std::uint8_t* m_record;
};

// Required: the high bit alone makes a lead byte, 128 to 160 included.
bool IsDouble(char c) {
    return (static_cast<unsigned char>(c) & 0x80) != 0;
}

// Bytes of the character at a place, never more than there are.
std::size_t CharacterSize(std::string_view text, std::size_t at) {
    return IsDouble(text[at]) && at + 1 < text.size() ? 2 : 1;
}

int CountCharacters(std::string_view text) {
    int count = 0;
    for (std::size_t at = 0; at < text.size(); at += CharacterSize(text, at)) ++count;
    return count;
}

bool HasDouble(std::string_view text) {
    for (const char c : text)
        if (IsDouble(c)) return true;
    return false;
}

std::string_view TextOrEmpty(const char* text) {
    return text != nullptr ? CutToField(text, kLongestText + 1, Limit::text) : std::string_view();
}

// One text of one record. The angle is in radians.
struct TextLine {
    int justification;
    double x, y, z;
    double height;
    double width;  // width factor
    double angle;
    std::string_view text;
    bool mixed;  // it holds a double-byte character
};

// Where the record's text starts. Required: a justification that has no place here keeps the position of the text
// before it.
TextStart StartOf(const Session& session, const Style& style, const TextLine& line) {
    const int justification = line.justification;
    const bool sideways = justification == 2 || justification == 3;
    const double share = justification == 2 ? 0.5 : 1.0;
    const double c = CountCharacters(line.text);
    if (style.flag() == kReferenced && sideways) {
        const double length = c * line.height * style.width() * share;
        return {line.x - std::cos(line.angle) * length, line.y - std::sin(line.angle) * length};
    }
    if (style.flag() == kVerticalStyle && sideways && !line.mixed) {
        const double length = (c * line.height + (c - 1) * 0.25 * line.height) * share;
        return {line.x - std::sin(line.angle) * length, line.y + std::cos(line.angle) * length};
    }
    if ((style.flag() == kReferenced && justification == 1) ||
        (style.flag() == kVerticalStyle && (justification == 1 || line.mixed)))
        return {line.x, line.y};
    return session.textStart;
}

// The last height of all styles; nothing else in the file says it.
void RememberHeight(Session& session, double height) {
    const int count = session.tables().Count(Table::style);
    for (int i = 0; i < count; ++i) Store(session.tables().Slot(Table::style, i) + style_record::kLastHeight, height);
}

void PutText(Session& session, const TextLine& line) {
    const std::size_t n = line.text.size();
    const std::size_t length = kText.length + n;
    const Style style(session);
    const TextStart start = StartOf(session, style, line);
    if (!Finite(ZeroSum(line.x, line.y, line.z, line.height, line.angle, start.x, start.y)) || !session.Fits(length))
        return;
    session.textStart = start;
    const Attributes& now = state().now;
    RecordWriter record(session.Begin(kText, length, now.layer), length, kEntityHeaderSize);
    record.u8(8, now.color).u8(9, now.linetype).f64(10, line.z);
    record.f64(18, start.x).f64(26, start.y).f64(34, line.height);
    record.u16(42, static_cast<unsigned>(n)).bytes(44, line.text.data(), n);
    record.f64(44 + n, line.angle).f64(52 + n, line.width).f64(60 + n, style.oblique());
    record.u8(68 + n, now.style).u8(69 + n, style.generation());
    RememberHeight(session, line.height);
}

// The corner of a column of characters from which vertical text runs, by its justification from 1 to 9.
struct VerticalPlace {
    double along;   // share of the column's length, from the end to the start
    double across;  // share of half a character's width: 1 to the right, -1 to the left
};
constexpr VerticalPlace kVerticalPlaces[] = {{0, 0},   {0.5, 0},  {1, 0}, {0, 1}, {0, -1},
                                             {0.5, 1}, {0.5, -1}, {1, 1}, {1, -1}};

void PutVerticalText(Session& session, TextLine line) {
    const Style style(session);
    const double sine = std::sin(line.angle);
    const double cosine = std::cos(line.angle);
    const double half = line.height / 2;
    const double tangent = std::tan(style.oblique());
    double x = line.x;
    double y = line.y;
    if (line.justification >= 1 && line.justification <= 9) {
        const VerticalPlace& place = kVerticalPlaces[line.justification - 1];
        const double length = CountCharacters(line.text) * line.height * place.along;
        const double aside = half * line.width * place.across;
        x = line.x - sine * length + cosine * aside;
        y = line.y + cosine * length + sine * aside;
    }
    // How far a double-byte character is from its cell's corner.
    const double turn = std::atan(1.0 / (line.width * 0.5 + tangent)) + line.angle;
    const double reach = std::hypot(line.height, tangent * line.height + line.width * half);
    const std::string_view text = line.text;
    line.justification = 1;
    line.mixed = true;
    for (std::size_t at = 0; at < text.size(); at += line.text.size()) {
        line.text = text.substr(at, CharacterSize(text, at));
        const bool wide = IsDouble(text[at]);
        line.x = wide ? x - std::cos(turn) * reach : x;
        line.y = wide ? y - std::sin(turn) * reach : y;
        PutText(session, line);
        x += sine * line.height;
        y -= cosine * line.height;
    }
}

void PutPlacedText(Session& session, int justification, double x, double y, double z, double height, double angle,
                   std::string_view text) {
    const Style style(session);
    TextLine line = {justification, x, y, z, height, style.width(), Radians(angle), text, HasDouble(text)};
    if (line.mixed && style.flag() == kVerticalStyle)
        PutVerticalText(session, line);
    else
        PutText(session, line);
}

}  // namespace
}  // namespace zm::dwg

using namespace zm::dwg;  // the functions of dwg/writer/writer.h stand outside every namespace

void _LDBtext(int justification, double x, double y, double height, double angle, const char* text) {
    Session* session = OpenSession();
    if (session == nullptr) return;
    PutPlacedText(*session, justification, x, y, ElevationAt(x, y), height, angle, TextOrEmpty(text));
}

void _LDBinttext(int justification, double x, double y, double height, double angle, int value) {
    Session* session = OpenSession();
    if (session == nullptr) return;
    const std::string text = zm::numbers::Text("%d", value);
    const double z = ElevationAt(x, y);
    PutText(*session, {justification, x, y, z, height, Style(*session).width(), Radians(angle), text, false});
}

void _LDBrealtext(int justification, double x, double y, double height, double angle, double value) {
    Session* session = OpenSession();
    if (session == nullptr) return;
    const std::string text = zm::numbers::Text("%.12g", value);
    const double elevation = ElevationAt(x, y);
    // Required: height and elevation change places here; stored drawings have the real numbers' heights as elevations.
    PutText(*session, {justification, x, y, height, elevation, Style(*session).width(), Radians(angle), text, false});
}

void _LDBfittext(double x1, double y1, double x2, double y2, double height, const char* text) {
    Session* session = OpenSession();
    if (session == nullptr) return;
    const Style style(*session);
    if (style.flag() == kVerticalStyle) _LMsg(texts::kVerticalFit, nullptr, 0);
    if (style.flag() != kReferenced) return;
    const std::string_view line = TextOrEmpty(text);
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double z = ElevationAt(x1, y1);
    const double distance = std::pow(dx * dx + dy * dy, 0.5);
    const double width = distance / CountCharacters(line) / height;
    PutText(*session, {1, x1, y1, z, height, width, std::atan2(dy, dx), line, HasDouble(line)});
}
