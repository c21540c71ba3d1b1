#include "tools/zenro/coord/points_io.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/text_decoder.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const {
        if (file != nullptr && file != stdin) std::fclose(file);
    }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

File OpenPoints(const std::string& name) {
    if (name.empty() || name == "-") return File(stdin);
    std::FILE* file = OpenFile(PathOf(name), "rb");
    if (file == nullptr) throw Failure(kNoInput, Phrase("{0}: cannot be opened: {1}.", name, SystemError(errno)));
    return File(file);
}

constexpr char kParting[] = " \t\r,;";

bool StartsLikeANumber(std::string_view text) {
    const std::size_t at = text.find_first_not_of("+-.");
    return at <= 2 && text[at] >= '0' && text[at] <= '9';
}

// The next word up to what parts words.
std::string_view NextWord(std::string_view& text) {
    const std::size_t begin = std::min(text.find_first_not_of(kParting), text.size());
    text.remove_prefix(begin);
    const std::size_t end = std::min(text.find_first_of(kParting), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

// Which axis a name means: 0 first, 1 second, -1 none of this kind.
int AxisOf(std::string_view name, PointKind kind) {
    const bool plane = kind == PointKind::plane;
    if (name == (plane ? "north" : "lat")) return 0;
    if (name == (plane ? "east" : "lon")) return 1;
    return -1;
}

// One number of a position from the front of a text. The hemisphere names the axis. Empty if it is one.
std::string TakeAxis(std::string_view& text, const PointFormat& format, int& axis, double& value) {
    const std::string_view whole = text;
    if (format.kind == PointKind::plane) {
        const std::string_view word = NextWord(text);
        if (!ReadReal(word, value)) return Phrase("\"{0}\" is no number", std::string(word.substr(0, 40)));
        return {};
    }
    const AngleText angle = TakeAngle(text, format.angles);
    const bool parted = text.empty() || std::strchr(kParting, text.front()) != nullptr;
    if (!angle.wrong.empty() || !parted) {
        const std::string what = Phrase("\"{0}\" is no angle", Trim(whole.substr(0, 40)));
        return angle.wrong.empty() ? what : what + ": " + angle.wrong;
    }
    value = angle.degrees;
    if (angle.hemisphere != '\0') axis = angle.hemisphere == 'N' || angle.hemisphere == 'S' ? 0 : 1;
    return {};
}

const char* AxesOf(const PointFormat& format) {
    const char* plane = format.firstAxisFirst ? N_("north east") : N_("east north");
    const char* geographic = format.firstAxisFirst ? N_("lat lon") : N_("lon lat");
    return Translated(format.kind == PointKind::plane ? plane : geographic);
}

// 30,5 120,75: commas between digits beside other partings.
bool HasDecimalCommas(std::string_view line) {
    bool comma = false;
    for (std::size_t i = 1; i + 1 < line.size(); ++i)
        comma = comma || (line[i] == ',' && std::isdigit(static_cast<unsigned char>(line[i - 1])) != 0 &&
                          std::isdigit(static_cast<unsigned char>(line[i + 1])) != 0);
    return comma && line.find_first_of(" \t;") != std::string_view::npos;
}

// Two numbers first; what follows is kept, unless it looks like a number that was meant to be part of the position.
std::string ReadPoint(std::string_view line, const PointFormat& format, PointLine& point) {
    bool seen[2] = {false, false};
    std::string_view text = line;
    for (int i = 0; i < 2; ++i) {
        text.remove_prefix(std::min(text.find_first_not_of(kParting), text.size()));
        if (text.empty())
            return Phrase("no point: \"{0}\"; write two numbers, {1}", std::string(line.substr(0, 60)), AxesOf(format));
        int axis = format.firstAxisFirst ? i : 1 - i;
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos && equals < text.find_first_of(kParting)) {
            axis = AxisOf(text.substr(0, equals), format.kind);
            text.remove_prefix(equals + 1);
        }
        double value = 0.0;
        const std::string wrong = axis < 0 ? Phrase("an unknown axis") : TakeAxis(text, format, axis, value);
        if (!wrong.empty())
            return Phrase("no point: \"{0}\"; {1}; write two numbers, {2}", std::string(line.substr(0, 60)), wrong,
                          AxesOf(format));
        if (seen[axis]) return Phrase("no point: one axis is given twice");
        (axis == 0 ? point.first : point.second) = value;
        seen[axis] = true;
    }
    point.rest = Trim(text.substr(std::min(text.find_first_not_of(kParting), text.size())));
    if (!StartsLikeANumber(point.rest)) return {};
    if (HasDecimalCommas(line)) return Phrase("decimal commas; write 30.5 for 30,5");
    return Phrase("a third number, \"{0}\", after the position; name the columns, such as --columns {1}",
                  NextWord(line = point.rest), (format.kind == PointKind::plane ? "n,e,h" : "lat,lon,h"));
}

std::string ReadLongitude(std::string_view line, const PointFormat& format, PointLine& point) {
    std::string_view text = line;
    if (text.substr(0, 4) == "lon=") text.remove_prefix(4);
    int axis = 1;
    point = PointLine{point.number, 0.0, 0.0, NAN, {}, {}, {}};
    if (TakeAxis(text, format, axis, point.second).empty() && Trim(text).empty() && axis == 1) return {};
    return ReadPoint(line, format, point);
}

// The fields of a line with columns: parted by tabs, else semicolons, else commas, else by blanks. A field may stand in
// double quotes.
std::vector<std::string> Fields(std::string_view line) {
    const char parting = line.find('\t') != std::string_view::npos  ? '\t'
                         : line.find(';') != std::string_view::npos ? ';'
                         : line.find(',') != std::string_view::npos ? ','
                                                                    : ' ';
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (const char c : line) {
        if (c == '"' && (quoted || Trim(fields.back()).empty())) {
            quoted = !quoted;
        } else if (c == parting && !quoted) {
            if (parting != ' ' || !fields.back().empty()) fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    for (std::string& field : fields) field = Trim(field);
    if (parting == ' ' && fields.back().empty()) fields.pop_back();
    return fields;
}

std::string ReadColumn(Column column, const std::string& field, const PointFormat& format, PointLine& point) {
    const auto isNumber = [&](double& value) {
        if (ReadReal(field, value)) return std::string();
        return Phrase(field.find(',') != std::string::npos ? N_("\"{0}\" is no number; write 30.5 for 30,5")
                                                           : N_("\"{0}\" is no number"),
                      field.substr(0, 40));
    };
    switch (column) {
        case Column::skip:
            return {};
        case Column::number:
            point.name = field;
            return {};
        case Column::code:
            point.code = field;
            return {};
        case Column::height:
            return field.empty() ? std::string() : isNumber(point.height);
        case Column::north:
            return isNumber(point.first);
        case Column::east:
            return isNumber(point.second);
        case Column::latitude:
        case Column::longitude:
            break;
    }
    const int meant = column == Column::latitude ? 0 : 1;
    int axis = meant;
    double value = 0.0;
    std::string_view text = field;
    std::string wrong = TakeAxis(text, format, axis, value);
    if (wrong.empty() && !Trim(text).empty()) wrong = Phrase("\"{0}\" is no angle", field.substr(0, 40));
    if (wrong.empty() && axis != meant)
        wrong = Phrase("\"{0}\" is of the other axis; check --columns", field.substr(0, 40));
    (meant == 0 ? point.first : point.second) = value;
    return wrong;
}

std::string ReadByColumns(std::string_view line, const PointFormat& format, PointLine& point) {
    const std::vector<std::string> fields = Fields(line);
    if (fields.size() < format.columns.size())
        return Phrase("only {0} of {1} columns", fields.size(), format.columns.size());
    point = PointLine{point.number, 0.0, 0.0, NAN, {}, {}, {}};
    for (std::size_t i = 0; i < format.columns.size(); ++i) {
        const std::string wrong = ReadColumn(format.columns[i], fields[i], format, point);
        if (!wrong.empty()) return Phrase("column {0}: {1}", i + 1, wrong);
    }
    for (std::size_t i = format.columns.size(); i < fields.size(); ++i)
        if (StartsLikeANumber(fields[i]))
            return Phrase("a number, \"{0}\", after the last column that --columns names", fields[i].substr(0, 40));
    return {};
}

// What is wrong with a position; empty if nothing.
std::string OutOfRange(const PointLine& point, const PointFormat& format) {
    const bool columns = !format.columns.empty();
    if (format.kind == PointKind::plane) {
        constexpr double kPole = 1.002e7;  // metres of the meridian from the equator to the pole, and some
        if (std::fabs(point.first) <= kPole) return {};
        if (std::fabs(point.second) <= kPole && point.first < 1.2e8)
            return Phrase(
                columns ? N_("the axes are swapped: the easting {0} is in the place of the northing; give --columns in "
                             "the order of the file")
                        : N_("the axes are swapped: the easting {0} is in the place of the northing; give --order {1}"),
                Fixed(point.first, 3), format.firstAxisFirst ? "east,north" : "north,east");
        return Phrase("northing {0} is beyond the pole", Fixed(point.first, 3));
    }
    if (std::fabs(point.first) > 90.0 && std::fabs(point.first) <= 180.0 && std::fabs(point.second) <= 90.0)
        return Phrase(columns ? N_("latitude {0} is beyond 90 degrees; the axes are swapped: give --columns in the "
                                   "order of the file")
                              : N_("latitude {0} is beyond 90 degrees; the axes are swapped: give --order {1}"),
                      Fixed(point.first, 6), format.firstAxisFirst ? "lon,lat" : "lat,lon");
    if (std::fabs(point.first) > 90.0) return Phrase("latitude {0} is beyond 90 degrees", Fixed(point.first, 6));
    if (std::fabs(point.second) > 360.0) return Phrase("longitude {0} is beyond 360 degrees", Fixed(point.second, 6));
    return {};
}

Column ColumnNamed(const std::string& name, bool strict) {
    struct Name {
        const char* name;
        Column column;
    };
    static constexpr Name kNames[] = {{"no", Column::number},      {"number", Column::number},
                                      {"name", Column::number},    {"id", Column::number},
                                      {"point", Column::number},   {"点号", Column::number},
                                      {"点名", Column::number},    {"code", Column::code},
                                      {"编码", Column::code},      {"代码", Column::code},
                                      {"n", Column::north},        {"north", Column::north},
                                      {"northing", Column::north}, {"北坐标", Column::north},
                                      {"e", Column::east},         {"east", Column::east},
                                      {"easting", Column::east},   {"东坐标", Column::east},
                                      {"h", Column::height},       {"height", Column::height},
                                      {"elev", Column::height},    {"高程", Column::height},
                                      {"lat", Column::latitude},   {"latitude", Column::latitude},
                                      {"纬度", Column::latitude},  {"lon", Column::longitude},
                                      {"lng", Column::longitude},  {"longitude", Column::longitude},
                                      {"经度", Column::longitude}, {"-", Column::skip},
                                      {"_", Column::skip}};
    std::string lower = name;
    for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    for (const Name& known : kNames)
        if (lower == known.name) return known.column;
    if (strict)
        throw Failure(
            kUsage,
            Phrase(
                "--columns: \"{0}\" is no column; use no, code, n, e, h, lat, lon, or - for one that is passed over.",
                name));
    return Column::skip;
}

bool HasBothAxes(const std::vector<Column>& columns) {
    const auto has = [&](Column column) { return std::count(columns.begin(), columns.end(), column) == 1; };
    return (has(Column::north) && has(Column::east)) != (has(Column::latitude) && has(Column::longitude));
}

// Headings: a first line in which no word begins like a number. They may name the columns.
bool AreHeadings(const std::string& line, PointFormat& format) {
    const std::vector<std::string> fields = Fields(line);
    for (const std::string& field : fields)
        if (StartsLikeANumber(field) || field.find('=') != std::string::npos) return false;
    std::string_view angle = line;
    if (TakeAngle(angle, format.angles).wrong.empty()) return false;
    std::vector<Column> columns;
    columns.reserve(fields.size());
    for (const std::string& field : fields) columns.push_back(ColumnNamed(field, false));
    if (format.columns.empty() && HasBothAxes(columns) && KindOf(columns) == format.kind) format.columns = columns;
    return fields.size() > 1;
}

using Parse = std::string (*)(std::string_view, const PointFormat&, PointLine&);

long ReadLines(const std::string& file, PointFormat format, Context& context, Parse parse,
               const std::function<void(const PointLine&)>& work,
               const std::function<void(const PointLine&, const std::string&)>& bad) {
    const TextDecoder decoder(format.encoding);
    const File in = OpenPoints(file);
    const std::string name = file.empty() ? "-" : file;
    long points = 0;
    std::string line;
    PointLine point;
    bool first = true;
    while (NextLine(in.get(), name, line)) {
        if (++point.number == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
        const std::string where = name + ":" + std::to_string(point.number) + ": ";
        std::string text = Trim(line);
        if (text.empty() || text[0] == '#') continue;
        if (!decoder.Decode(text) && !(decoder.plain() && !decoder.named() && format.columns.empty()))
            context.report.Warn(
                N_("texts of another encoding"),
                Phrase("{0}is no {1}; its text is passed on as it is. Give --encoding GBK, or the one it has.", where,
                       (decoder.named() ? decoder.name() : "UTF-8")));
        if (std::exchange(first, false) && AreHeadings(text, format)) {
            context.report.Note(Phrase("{0}is taken as a line of headings: \"{1}\".", where, text.substr(0, 60)));
            continue;
        }
        std::string wrong = format.columns.empty() ? parse(text, format, point) : ReadByColumns(text, format, point);
        const char* kind = wrong.empty() ? N_("positions out of range") : N_("lines that are no point");
        if (wrong.empty()) wrong = OutOfRange(point, format);
        if (!wrong.empty()) {
            context.report.Skip(kind, where + wrong + ".");
            if (bad) bad(point, wrong);
            continue;
        }
        ++points;
        work(point);
    }
    return points;
}

}  // namespace

std::vector<Column> ColumnsOf(const std::string& list) {
    std::vector<Column> columns;
    for (std::size_t from = 0; from <= list.size();) {
        const std::size_t comma = std::min(list.find(',', from), list.size());
        columns.push_back(ColumnNamed(Trim(list.substr(from, comma - from)), true));
        from = comma + 1;
    }
    if (!HasBothAxes(columns))
        throw Failure(kUsage, Phrase("--columns {0}: needs n and e, or lat and lon, each once.", list));
    return columns;
}

PointKind KindOf(const std::vector<Column>& columns) {
    return std::count(columns.begin(), columns.end(), Column::north) > 0 ? PointKind::plane : PointKind::geographic;
}

std::string ReadPointText(std::string_view line, const PointFormat& format, PointLine& point) {
    const std::string wrong =
        format.columns.empty() ? ReadPoint(line, format, point) : ReadByColumns(line, format, point);
    return wrong.empty() ? OutOfRange(point, format) : wrong;
}

long ReadPoints(const std::string& file, const PointFormat& format, Context& context,
                const std::function<void(const PointLine&)>& work,
                const std::function<void(const PointLine&, const std::string&)>& bad) {
    return ReadLines(file, format, context, ReadPoint, work, bad);
}

long ReadLongitudes(const std::string& file, const PointFormat& format, Context& context,
                    const std::function<void(const PointLine&)>& work,
                    const std::function<void(const PointLine&, const std::string&)>& bad) {
    return ReadLines(file, format, context, ReadLongitude, work, bad);
}

std::string FamilyTitle(const Family& family) {
    switch (family.selector()) {
        case 54:
            return N_("54 family, Krassovsky 1940");
        case 80:
            return N_("80 family, IAG 1975");
        default:
            return N_("2000 family, a 6378137 m");
    }
}

void AddFamilyOption(Verb verb, Family& family) {
    verb.AddOption("--system", family.name, "Ellipsoid family: 54, 80, 2000 (84 is the same)")
        .OneOf({"54", "80", "84", "2000"})
        .ShowDefault();
}

void AddAngleOption(Verb verb, AngleForm& form) {
    verb.AddChoice("--angles", form,
                   {{"decimal", AngleForm::decimal}, {"packed", AngleForm::packed}, {"dms", AngleForm::dms}},
                   "Angles as decimal degrees, packed degrees.mmss, or degrees, minutes and seconds")
        .Default("decimal");
}

void AddCommonOptions(Verb verb, Context& context) {
    verb.AddFlag("--json", context.json, "Results as JSON on stdout");
    verb.AddFlag(
        "--quiet", [&context] { context.report.SetQuiet(true); },
        "Only errors on stderr; the exit status says the rest");
    verb.AddFlag("--verbose", context.verbose, "Tell more");
}

}  // namespace zm::tool
