#include "tools/zenro/points_io.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "tools/zenro/text.h"
#include "tools/zenro/tool_host.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const {
        if (file != nullptr && file != stdin) std::fclose(file);
    }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

constexpr std::size_t kMaxLine = 1u << 16;

File OpenPoints(const std::string& name) {
    if (name.empty() || name == "-") return File(stdin);
    std::FILE* file = std::fopen(name.c_str(), "rb");
    if (file == nullptr) throw Failure(kNoInput, name + ": cannot be opened: " + std::strerror(errno) + ".");
    return File(file);
}

// One line without its end; false at the end of the file. A line that is too long is cut and reads as no point.
bool NextLine(std::FILE* file, const std::string& name, std::string& line) {
    line.clear();
    int c;
    while ((c = std::getc(file)) != EOF && c != '\n')
        if (line.size() < kMaxLine) line += static_cast<char>(c);
    CheckStop();
    if (c == EOF && std::ferror(file) != 0)
        throw Failure(kNoInput, (name.empty() ? "-" : name) + ": cannot be read: " + std::strerror(errno) + ".");
    return c != EOF || !line.empty();
}

// The words of a line: blanks, tabs, commas and semicolons part them.
std::vector<std::string_view> Words(std::string_view line, std::size_t& behindSecond) {
    constexpr char kParting[] = " \t\r,;";
    std::vector<std::string_view> words;
    std::size_t at = 0;
    behindSecond = line.size();
    while ((at = line.find_first_not_of(kParting, at)) != std::string_view::npos) {
        std::size_t end = line.find_first_of(kParting, at);
        if (end == std::string_view::npos) end = line.size();
        words.push_back(line.substr(at, end - at));
        if (words.size() == 2) behindSecond = end;
        at = end;
    }
    return words;
}

// Which axis a name stands for: 0 first, 1 second, -1 none of this kind.
int AxisOf(std::string_view name, PointKind kind) {
    const bool plane = kind == PointKind::plane;
    if (name == (plane ? "north" : "lat")) return 0;
    if (name == (plane ? "east" : "lon")) return 1;
    return -1;
}

bool ReadPoint(std::string_view line, const PointFormat& format, PointLine& point) {
    std::size_t behind = 0;
    const auto words = Words(line, behind);
    if (words.size() < 2) return false;
    bool seen[2] = {false, false};
    for (int i = 0; i < 2; ++i) {
        std::string_view word = words[static_cast<std::size_t>(i)];
        int axis = format.firstAxisFirst ? i : 1 - i;
        const std::size_t equals = word.find('=');
        if (equals != std::string_view::npos) {
            axis = AxisOf(word.substr(0, equals), format.kind);
            word.remove_prefix(equals + 1);
        }
        if (axis < 0 || seen[axis] || !ReadReal(word, axis == 0 ? point.first : point.second)) return false;
        seen[axis] = true;
    }
    point.rest = Trim(line.substr(behind));
    return true;
}

bool ReadLongitude(std::string_view line, const PointFormat& format, PointLine& point) {
    std::size_t behind = 0;
    const auto words = Words(line, behind);
    if (words.size() != 1) return ReadPoint(line, format, point);
    std::string_view word = words[0];
    if (word.substr(0, 4) == "lon=") word.remove_prefix(4);
    point.first = 0.0;
    point.rest.clear();
    return ReadReal(word, point.second);
}

// What is wrong with a geographic position; empty if nothing.
std::string OutOfRange(const PointLine& point) {
    if (std::fabs(point.first) > 90.0) return "latitude " + Fixed(point.first, 6) + " is beyond 90 degrees";
    if (std::fabs(point.second) > 360.0) return "longitude " + Fixed(point.second, 6) + " is beyond 360 degrees";
    return {};
}

long ReadLines(const std::string& file, const PointFormat& format, Context& context,
               bool (*parse)(std::string_view, const PointFormat&, PointLine&),
               const std::function<void(const PointLine&)>& work) {
    const File in = OpenPoints(file);
    const std::string name = file.empty() ? "-" : file;
    const char* axes = format.kind == PointKind::plane ? (format.firstAxisFirst ? "north east" : "east north")
                                                       : (format.firstAxisFirst ? "lat lon" : "lon lat");
    long points = 0;
    std::string line;
    PointLine point;
    while (NextLine(in.get(), file, line)) {
        ++point.number;
        const std::string text = Trim(line);
        if (text.empty() || text[0] == '#') continue;
        const std::string where = name + ":" + std::to_string(point.number) + ": ";
        if (!parse(text, format, point)) {
            context.report.Skip("lines that are no point",
                                where + "no point: \"" + text.substr(0, 60) + "\"; write two numbers, " + axes + ".");
            continue;
        }
        if (format.kind == PointKind::geographic && format.angles == AngleForm::packed) {
            point.first = dms_deg(point.first);
            point.second = dms_deg(point.second);
        }
        const std::string wrong = format.kind == PointKind::geographic ? OutOfRange(point) : std::string();
        if (!wrong.empty()) {
            context.report.Skip("positions out of range", where + wrong + "; the axes are " + axes + ".");
            continue;
        }
        ++points;
        work(point);
    }
    return points;
}

}  // namespace

long ReadPoints(const std::string& file, const PointFormat& format, Context& context,
                const std::function<void(const PointLine&)>& work) {
    return ReadLines(file, format, context, ReadPoint, work);
}

long ReadLongitudes(const std::string& file, const PointFormat& format, Context& context,
                    const std::function<void(const PointLine&)>& work) {
    return ReadLines(file, format, context, ReadLongitude, work);
}

std::string FamilyTitle(const Family& family) {
    switch (family.selector()) {
        case 54:
            return "54 family, Krassovsky 1940";
        case 80:
            return "80 family, IAG 1975";
        default:
            return "2000 family, a 6378137 m";
    }
}

void AddFamilyOption(CLI::App& verb, Family& family) {
    verb.add_option("--system", family.name, "Ellipsoid family: 54, 80, 2000 (84 is the same)")
        ->check(CLI::IsMember({"54", "80", "84", "2000"}))
        ->capture_default_str();
}

void AddAngleOption(CLI::App& verb, AngleForm& form) {
    static const std::map<std::string, AngleForm> kForms = {{"decimal", AngleForm::decimal},
                                                            {"packed", AngleForm::packed}};
    verb.add_option("--angles", form, "Angles as decimal degrees, or packed degrees.mmss")
        ->transform(CLI::CheckedTransformer(kForms, CLI::ignore_case).description("decimal|packed"))
        ->default_str("decimal");
}

void AddCommonOptions(CLI::App& verb, Context& context) {
    verb.add_flag("--json", context.json, "Results as JSON on stdout");
    verb.add_flag_function(
        "--quiet", [&context](std::int64_t) { context.report.SetQuiet(true); }, "No notes and no progress on stderr");
    verb.add_flag("--verbose", context.verbose, "Tell more");
}

}  // namespace zm::tool
