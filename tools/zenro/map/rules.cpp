#include "tools/zenro/map/rules.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <sstream>

#include "tools/kit/exit_codes.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr int kFootLayer = 213;  // of the foot of a slope that is not drawn itself
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
    at.Fail(Phrase("\"{0}\" is no kind of geometry; use point, line, area or any.", word));
}

LabelPlace PlaceOf(const std::string& word, const Place& at) {
    static const std::map<std::string, LabelPlace> kPlaces = {
        {"beside", LabelPlace::beside}, {"centre", LabelPlace::centre}, {"center", LabelPlace::centre},
        {"along", LabelPlace::along},   {"spread", LabelPlace::spread}, {"decimal", LabelPlace::decimal}};
    const auto found = kPlaces.find(word);
    if (found == kPlaces.end())
        at.Fail(Phrase("\"{0}\" is no place of a label; use beside, centre, along, spread or decimal.", word));
    return found->second;
}

int WholeNumber(const std::string& word, const std::string& value, int low, int high, const Place& at) {
    int number = 0;
    if (!ReadWhole(value, number) || number < low || number > high)
        at.Fail(Phrase("\"{0}\" needs a whole number from {1} to {2}, not \"{3}\".", word, low, high, value));
    return number;
}

// A label is the name of a field, or a text in double quotes with fields in braces: "{name} {elev:.2f}".
std::vector<LabelPiece> LabelPieces(const std::string& value, const Place& at) {
    if (value.empty())
        at.Fail(Phrase("\"label\" needs a field, or a text in double quotes such as \"{name} {elev:.2f}\"."));
    if (value.front() != '"') return {LabelPiece{value, true, -1}};
    if (value.size() < 2 || value.back() != '"') at.Fail(Phrase("the text {0} has no closing quote.", value));
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
        if (close == std::string::npos) at.Fail(Phrase("a { of {0} has no }.", value));
        LabelPiece piece{value.substr(i + 1, close - i - 1), true, -1};
        const std::size_t colon = piece.text.find(':');
        if (colon != std::string::npos) {
            const std::string format = piece.text.substr(colon + 1);
            piece.text.resize(colon);
            if (format.size() != 3 || format[0] != '.' || std::isdigit(static_cast<unsigned char>(format[1])) == 0 ||
                format[2] != 'f')
                at.Fail(Phrase("\"{0}\" is no format of a number; use .0f to .9f.", format));
            piece.decimals = format[1] - '0';
        }
        if (piece.text.empty()) at.Fail(Phrase("an empty {} in {0}; name a field in it.", value));
        endLiteral();
        pieces.push_back(piece);
        i = close;
    }
    endLiteral();
    return pieces;
}

// Denominators, the greater scale first: 500-2000, 5000- or -2000.
void ReadScales(const std::string& value, Rule& rule, const Place& at) {
    const std::size_t dash = value.find('-');
    const std::string from = Trim(value.substr(0, dash)), to = dash < value.size() ? Trim(value.substr(dash + 1)) : "";
    const bool good = dash != std::string::npos && (!from.empty() || !to.empty()) &&
                      (from.empty() || (ReadReal(from, rule.fromScale) && rule.fromScale > 0.0)) &&
                      (to.empty() || (ReadReal(to, rule.toScale) && rule.toScale >= std::max(rule.fromScale, 1.0)));
    if (!good)
        at.Fail(Phrase(
            "\"scales\" needs denominators such as 500-2000, 5000- or -2000, the smaller one first, not \"{0}\".",
            value));
}

void ApplySetting(Rule& rule, const std::string& word, const std::string& value, const Place& at) {
    if (word == "skip" || word == "also") {
        if (!value.empty()) at.Fail(Phrase("\"{0}\" takes no value.", word));
        (word == "skip" ? rule.skip : rule.also) = true;
        return;
    }
    if (word == "path") {
        double beside = 0.0;
        if (!value.empty() && !(ReadReal(value, beside) && beside >= 0.0 && beside <= 50.0))
            at.Fail(Phrase("\"path\" needs metres up to 50 beside roads, or no value, not \"{0}\".", value));
        rule.path = beside;
        return;
    }
    if (value.empty()) at.Fail(Phrase("\"{0}\" needs a value.", word));
    if (word == "layer")
        rule.layer = WholeNumber(word, value, 1, 999, at);
    else if (word == "symbol")
        rule.symbol = WholeNumber(word, value, 0, 999, at);
    else if (word == "line")
        rule.lineType = WholeNumber(word, value, 1, 5, at);
    else if (word == "outline")
        rule.outline = WholeNumber(word, value, 1, 999, at);
    else if (word == "index")
        rule.index = WholeNumber(word, value, 1, 999, at);
    else if (word == "sea")
        rule.sea = WholeNumber(word, value, 1, 999, at);
    else if (word == "solid")
        rule.solid = WholeNumber(word, value, 1, 255, at);
    else if (word == "pen")
        rule.penStyle = WholeNumber(word, value, 0, 6, at);
    else if (word == "value")
        rule.penValue = WholeNumber(word, value, 0, 255, at);
    else if (word == "level")
        rule.level = WholeNumber(word, value, 1, 9, at);
    else if (word == "label")
        rule.label = LabelPieces(value, at);
    else if (word == "scales")
        ReadScales(value, rule, at);
    else if (word == "under")
        rule.under = LabelPieces(value, at);
    else if (word == "place")
        rule.place = PlaceOf(value, at);
    else if (word == "height")
        rule.heightField = value;
    else if (word == "legend") {
        const std::vector<LabelPiece> pieces = LabelPieces(value, at);
        if (pieces.size() == 1 && !pieces.front().field) rule.legend = pieces.front().text;
        if (rule.legend.empty())
            at.Fail(Phrase("\"legend\" needs a name, such as legend \"Car park\", not {0}.", value));
    } else if (word == "road") {
        if (!ReadReal(value, rule.roadWidth)) rule.roadField = value;
        if (rule.roadField.empty() && !(rule.roadWidth > 0.0 && rule.roadWidth <= 200.0))
            at.Fail(Phrase("\"road\" needs metres up to 200 or the name of a field, not \"{0}\".", value));
    } else if (word == "interval") {
        if (!ReadReal(value, rule.interval) || !(rule.interval > 0.0 && rule.interval <= 1000.0))
            at.Fail(Phrase("\"interval\" needs metres between contours, not \"{0}\".", value));
    } else if (word == "crest" || word == "foot") {
        if (!rule.slopeField.empty()) at.Fail(Phrase("a line is the crest of a slope or its foot; name one of them."));
        rule.slopeField = value;
        rule.isCrest = word == "crest";
    } else if (word == "storey") {
        rule.hasStorey = true;
        if (!ReadWhole(value, rule.storey)) rule.storeyField = value;
        if (rule.storey < -9 || rule.storey > 9)
            at.Fail(Phrase("\"storey\" needs a whole number from -9 to 9 or the name of a field, not \"{0}\".", value));
    } else if (word == "angle" || word == "azimuth") {
        rule.angleField = value;
        rule.azimuth = word == "azimuth";
    } else if (word == "note") {
        if (value.size() != 1) at.Fail(Phrase("\"note\" needs the one character of a note class, not \"{0}\".", value));
        rule.note = value[0];
    } else {
        at.Fail(Phrase(
            "\"{0}\" is unknown; use layer, symbol, line, outline, solid, pen, value, note, label, under, place, "
            "angle, azimuth, height, index, interval, crest, foot, road, path, storey, sea, level, scales, legend, "
            "also "
            "or skip.",
            word));
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
            if (comma == text.size() && Trim(text).empty()) at.Fail(Phrase("nothing follows the \"->\"."));
            at.Fail(Phrase("an empty place between commas."));
        }
        const std::size_t blank = setting.find_first_of(" \t");
        const std::string word = setting.substr(0, blank);
        ApplySetting(rule, word, blank == std::string::npos ? std::string() : Trim(setting.substr(blank)), at);
    }
}

Rule ParseRule(const std::string& text, const Rule& section, const Place& at) {
    const std::size_t arrow = FindOutsideQuotes(text, "->");
    if (arrow == std::string::npos)
        at.Fail(HasOpenQuote(text) ? Phrase("a quote is not closed.")
                                   : Phrase("a rule is CONDITION -> SETTINGS; the \"->\" is missing."));
    Rule rule = section;
    rule.line = at.line;
    rule.condition = Trim(text.substr(0, arrow));
    if (rule.condition.empty()) at.Fail(Phrase("nothing is before the \"->\"; use * for every feature."));
    if (rule.condition == "*") rule.condition.clear();
    ApplySettings(rule, text.substr(arrow + 2), at);
    if (rule.layer == 0) rule.layer = rule.symbol > 0 ? rule.symbol : rule.outline;
    if (!rule.skip && rule.OnlyStorey() && rule.label.empty() && !rule.IsRoad()) {
        rule.also = true;
        return rule;
    }
    if (!rule.skip && !rule.slopeField.empty() && !rule.isCrest && rule.layer == 0) rule.layer = kFootLayer;
    if (!rule.skip && rule.layer == 0) at.Fail(Phrase("a rule needs \"symbol\", \"outline\", \"layer\" or \"skip\"."));
    if (!rule.skip && rule.symbol == 0 && rule.outline == 0 && rule.label.empty() && !rule.IsRoad() &&
        rule.slopeField.empty())
        at.Fail(Phrase(
            "\"layer\" alone draws nothing; add \"symbol\", \"outline\", \"label\" or \"road\", or write \"skip\"."));
    if (!rule.under.empty() && rule.label.empty()) at.Fail(Phrase("\"under\" needs a \"label\" above it."));
    return rule;
}

// [layer-pattern] or [layer-pattern : kind]
Rule ParseSection(const std::string& text, const Place& at) {
    if (text.back() != ']') at.Fail(Phrase("a section is [LAYER] or [LAYER : KIND]; the ] is missing."));
    const std::string inside = text.substr(1, text.size() - 2);
    const std::size_t colon = inside.rfind(':');
    Rule section;
    section.layerGlob = Trim(inside.substr(0, colon));
    if (colon != std::string::npos) section.kind = KindOf(Trim(inside.substr(colon + 1)), at);
    if (section.layerGlob.empty()) at.Fail(Phrase("a section needs a layer name; use * for all."));
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

bool Rule::IsFor(double scale) const {
    return scale <= 0.0 || (scale >= fromScale && (toScale <= 0.0 || scale <= toScale));
}

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
            at.Fail(Phrase("a zero byte; this is no text file."));
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
    if (!Trim(joined).empty()) at.Fail(Phrase("the last line ends with \\ and nothing follows."));
    if (result.rules.empty())
        throw Failure(kUsage, Phrase("{0}: no rule in it; see docs/zenro/rules.md.", path.string()));
    return result;
}

Rules ReadRules(const std::filesystem::path& path) {
    return ParseRules(ReadWholeFile(path, kMaxRulesBytes), path);
}

}  // namespace zm::tool
