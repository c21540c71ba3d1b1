#include "tools/zenro/rules.h"

#include <cctype>
#include <fstream>
#include <map>
#include <sstream>

#include "tools/zenro/exit_codes.h"
#include "tools/zenro/text.h"

namespace zm::tool {
namespace {

constexpr std::size_t kMaxRulesBytes = 4u << 20;

// What a parse error names: the file and the line.
struct Place {
    std::string file;
    int line;
    [[noreturn]] void Fail(const std::string& what) const {
        throw Failure(kUsage, file + ":" + std::to_string(line) + ": " + what);
    }
};

// The first place of a text outside quotes; npos if none. Quotes are doubled inside themselves, as in SQL.
std::size_t FindOutsideQuotes(const std::string& text, const std::string& what, std::size_t from = 0) {
    char quote = '\0';
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != '\0') {
            if (c == quote) quote = '\0';
        } else if (text.compare(i, what.size(), what) == 0) {
            return i;
        } else if (c == '\'' || c == '"') {
            quote = c;
        }
    }
    return std::string::npos;
}

bool HasOpenQuote(const std::string& text) {
    char quote = '\0';
    for (const char c : text) {
        if (quote != '\0') {
            if (c == quote) quote = '\0';
        } else if (c == '\'' || c == '"') {
            quote = c;
        }
    }
    return quote != '\0';
}

GeometryKind KindOf(const std::string& word, const Place& at) {
    if (word == "any") return GeometryKind::any;
    if (word == "point") return GeometryKind::point;
    if (word == "line") return GeometryKind::line;
    if (word == "area") return GeometryKind::area;
    at.Fail("\"" + word + "\" is no kind of geometry; use point, line, area or any.");
}

LabelPlace PlaceOf(const std::string& word, const Place& at) {
    static const std::map<std::string, LabelPlace> kPlaces = {
        {"beside", LabelPlace::beside}, {"centre", LabelPlace::centre}, {"center", LabelPlace::centre},
        {"along", LabelPlace::along},   {"spread", LabelPlace::spread}, {"decimal", LabelPlace::decimal}};
    const auto found = kPlaces.find(word);
    if (found == kPlaces.end())
        at.Fail("\"" + word + "\" is no place of a label; use beside, centre, along, spread or decimal.");
    return found->second;
}

int WholeNumber(const std::string& word, const std::string& value, int low, int high, const Place& at) {
    int number = 0;
    if (!ReadWhole(value, number) || number < low || number > high)
        at.Fail("\"" + word + "\" needs a whole number from " + std::to_string(low) + " to " + std::to_string(high) +
                ", not \"" + value + "\".");
    return number;
}

// A label is the name of a field, or a text in double quotes with fields in braces: "{name} {elev:.2f}".
std::vector<LabelPiece> LabelPieces(const std::string& value, const Place& at) {
    if (value.empty()) at.Fail("\"label\" needs a field, or a text in double quotes such as \"{name} {elev:.2f}\".");
    if (value.front() != '"') return {LabelPiece{value, true, -1}};
    if (value.size() < 2 || value.back() != '"') at.Fail("the text " + value + " has no closing quote.");
    std::vector<LabelPiece> pieces;
    std::string literal;
    const auto endLiteral = [&] {
        if (!literal.empty()) pieces.push_back({literal, false, -1});
        literal.clear();
    };
    for (std::size_t i = 1; i + 1 < value.size(); ++i) {
        if (value[i] != '{') {
            literal += value[i];
            continue;
        }
        const std::size_t close = value.find('}', i);
        if (close == std::string::npos) at.Fail("a { of " + value + " has no }.");
        LabelPiece piece{value.substr(i + 1, close - i - 1), true, -1};
        const std::size_t colon = piece.text.find(':');
        if (colon != std::string::npos) {
            const std::string format = piece.text.substr(colon + 1);
            piece.text.resize(colon);
            if (format.size() != 3 || format[0] != '.' || std::isdigit(static_cast<unsigned char>(format[1])) == 0 ||
                format[2] != 'f')
                at.Fail("\"" + format + "\" is no format of a number; use .0f to .9f.");
            piece.decimals = format[1] - '0';
        }
        if (piece.text.empty()) at.Fail("an empty {} in " + value + "; name a field in it.");
        endLiteral();
        pieces.push_back(piece);
        i = close;
    }
    endLiteral();
    return pieces;
}

void ApplySetting(Rule& rule, const std::string& word, const std::string& value, const Place& at) {
    if (word == "skip" || word == "also") {
        if (!value.empty()) at.Fail("\"" + word + "\" takes no value.");
        (word == "skip" ? rule.skip : rule.also) = true;
        return;
    }
    if (value.empty()) at.Fail("\"" + word + "\" needs a value.");
    if (word == "layer")
        rule.layer = WholeNumber(word, value, 1, 999, at);
    else if (word == "symbol")
        rule.symbol = WholeNumber(word, value, 0, 999, at);
    else if (word == "line")
        rule.lineType = WholeNumber(word, value, 1, 5, at);
    else if (word == "outline")
        rule.outline = WholeNumber(word, value, 1, 999, at);
    else if (word == "pen")
        rule.penStyle = WholeNumber(word, value, 0, 6, at);
    else if (word == "value")
        rule.penValue = WholeNumber(word, value, 0, 255, at);
    else if (word == "level")
        rule.level = WholeNumber(word, value, 1, 9, at);
    else if (word == "label")
        rule.label = LabelPieces(value, at);
    else if (word == "under")
        rule.under = LabelPieces(value, at);
    else if (word == "place")
        rule.place = PlaceOf(value, at);
    else if (word == "height")
        rule.heightField = value;
    else if (word == "angle" || word == "azimuth") {
        rule.angleField = value;
        rule.azimuth = word == "azimuth";
    } else if (word == "note") {
        if (value.size() != 1) at.Fail("\"note\" needs the one character of a note class, not \"" + value + "\".");
        rule.note = value[0];
    } else {
        at.Fail("\"" + word +
                "\" is unknown; use layer, symbol, line, outline, pen, value, note, label, under, place, "
                "angle, azimuth, height, level, also or skip.");
    }
}

void ApplySettings(Rule& rule, const std::string& text, const Place& at) {
    std::size_t from = 0;
    while (from <= text.size()) {
        std::size_t comma = FindOutsideQuotes(text, ",", from);
        if (comma == std::string::npos) comma = text.size();
        const std::string setting = Trim(text.substr(from, comma - from));
        from = comma + 1;
        if (setting.empty()) {
            if (comma == text.size() && Trim(text).empty()) at.Fail("nothing stands behind the \"->\".");
            at.Fail("an empty place between commas.");
        }
        const std::size_t blank = setting.find_first_of(" \t");
        const std::string word = setting.substr(0, blank);
        ApplySetting(rule, word, blank == std::string::npos ? std::string() : Trim(setting.substr(blank)), at);
    }
}

Rule ParseRule(const std::string& text, const Rule& section, const Place& at) {
    const std::size_t arrow = FindOutsideQuotes(text, "->");
    if (arrow == std::string::npos)
        at.Fail(HasOpenQuote(text) ? "a quote is not closed."
                                   : "a rule is CONDITION -> SETTINGS; the \"->\" is missing.");
    Rule rule = section;
    rule.line = at.line;
    rule.condition = Trim(text.substr(0, arrow));
    if (rule.condition.empty()) at.Fail("nothing stands before the \"->\"; use * for every feature.");
    if (rule.condition == "*") rule.condition.clear();
    ApplySettings(rule, text.substr(arrow + 2), at);
    if (rule.layer == 0) rule.layer = rule.symbol > 0 ? rule.symbol : rule.outline;
    if (!rule.skip && rule.layer == 0) at.Fail("a rule needs \"symbol\", \"outline\", \"layer\" or \"skip\".");
    if (!rule.under.empty() && rule.label.empty()) at.Fail("\"under\" needs a \"label\" above it.");
    return rule;
}

// [layer-pattern] or [layer-pattern : kind]
Rule ParseSection(const std::string& text, const Place& at) {
    if (text.back() != ']') at.Fail("a section is [LAYER] or [LAYER : KIND]; the ] is missing.");
    const std::string inside = text.substr(1, text.size() - 2);
    const std::size_t colon = inside.rfind(':');
    Rule section;
    section.layerGlob = Trim(inside.substr(0, colon));
    if (colon != std::string::npos) section.kind = KindOf(Trim(inside.substr(colon + 1)), at);
    if (section.layerGlob.empty()) at.Fail("a section needs a layer name; use * for all.");
    return section;
}

// A # begins a comment at the start of a line, and between blanks outside quotes; "note #" is a note class.
std::string WithoutComment(const std::string& line) {
    std::size_t from = 0;
    while (true) {
        const std::size_t hash = FindOutsideQuotes(line, "#", from);
        if (hash == std::string::npos) return line;
        const bool before = hash == 0 || line[hash - 1] == ' ' || line[hash - 1] == '\t';
        const bool behind = hash + 1 < line.size() && (line[hash + 1] == ' ' || line[hash + 1] == '\t');
        if (before && (behind || Trim(line.substr(0, hash)).empty())) return line.substr(0, hash);
        from = hash + 1;
    }
}

}  // namespace

int Rule::LevelOf(GeometryKind of) const {
    if (level != 0) return level;
    return of == GeometryKind::area ? 3 : of == GeometryKind::line ? 5 : 7;
}

bool FitsGlob(const std::string& pattern, const std::string& name) {
    std::size_t p = 0, n = 0, star = std::string::npos, back = 0;
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            back = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || same(pattern[p], name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string::npos) {
            p = star + 1;
            n = ++back;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

Rules ParseRules(const std::string& text, const std::filesystem::path& path) {
    Rules result;
    result.path = path;
    Rule section;
    section.layerGlob = "*";
    std::istringstream lines(text);
    std::string raw, joined;
    Place at{path.string(), 0};
    int begin = 0;
    for (int number = 1; std::getline(lines, raw); ++number) {
        if (number == 1 && raw.compare(0, 3, "\xEF\xBB\xBF") == 0) raw.erase(0, 3);
        if (raw.find('\0') != std::string::npos) {
            at.line = number;
            at.Fail("a zero byte; this is no text file.");
        }
        if (joined.empty()) begin = number;
        std::string line = Trim(WithoutComment(raw));
        const bool more = !line.empty() && line.back() == '\\';
        if (more) line.pop_back();
        joined += line;
        if (more) {
            joined += ' ';
            continue;
        }
        const std::string whole = Trim(joined);
        joined.clear();
        if (whole.empty()) continue;
        at.line = begin;
        if (whole.front() == '[')
            section = ParseSection(whole, at);
        else
            result.rules.push_back(ParseRule(whole, section, at));
    }
    at.line = begin;
    if (!Trim(joined).empty()) at.Fail("the last line ends with \\ and nothing follows.");
    if (result.rules.empty()) throw Failure(kUsage, path.string() + ": no rule in it; see docs/zenro/rules.md.");
    return result;
}

Rules ReadRules(const std::filesystem::path& path) {
    return ParseRules(ReadWholeFile(path, kMaxRulesBytes), path);
}

}  // namespace zm::tool
