// The rules file: which feature becomes which symbol. Its form is described in docs/zenro/rules.md.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zm::tool {

/// What a feature is, as far as rules ask.
enum class GeometryKind { any, point, line, area };

/// Where a label stands.
enum class LabelPlace {
    byKind,   // point: beside; line: along; area: centre
    beside,   // right of the point, else left, above, below
    centre,   // centred on the point or in the area
    along,    // one run of text in the middle of the line, in its direction
    spread,   // character by character along the line, with the interval of the note class
    decimal,  // the decimal point of the number stands on the surveyed point
};

/// One piece of a label: a literal text or the value of a field.
struct LabelPiece {
    std::string text;  // UTF-8; the name of the field
    bool field = false;
    int decimals = -1;  // at least 0: the field's value as a number with so many decimals
};

struct Rule {
    std::string condition;  // OGR attribute filter; empty: every feature
    std::string layerGlob;  // OGR layers by name; * and ? as in a shell
    GeometryKind kind = GeometryKind::any;
    int line = 0;  // line number in the rules file

    bool skip = false;  // not drawn, on purpose
    bool also = false;  // the rules below are asked too
    int layer = 0;      // feature code: layer, colour and width; the symbol or outline where none is named
    int symbol = 0;     // symbol code; 0 draws no symbol
    int lineType = 1;   // 1 polyline, 2 smooth curve, 3 arcs, 4 and 5 circle
    int outline = 0;    // line symbol for the rings of an area, drawn besides the symbol
    int penStyle = 0;   // the style of CTQPen
    int penValue = 0;   // the value of CTQPen: colour number and width in 0.1 mm
    char note = '0';    // note class of the label
    std::vector<LabelPiece> label;
    std::vector<LabelPiece> under;  // second line of a label, under a bar
    LabelPlace place = LabelPlace::byKind;
    std::string angleField;
    bool azimuth = false;  // the angle is clockwise from north
    std::string heightField;
    int level = 0;  // 1 is drawn first, 9 last; 0: by kind

    /// The level in force for a kind.
    int LevelOf(GeometryKind of) const;
};

struct Rules {
    std::filesystem::path path;
    std::vector<Rule> rules;
};

/// Reads a rules file. Throws Failure: kNoInput if it cannot be read, kUsage with file and line if it is wrong.
Rules ReadRules(const std::filesystem::path& path);
/// Parses the text of a rules file; path is for messages only.
Rules ParseRules(const std::string& text, const std::filesystem::path& path);

/// True if a name fits a pattern with * and ?; letters of ASCII in either case.
bool FitsGlob(const std::string& pattern, const std::string& name);

}  // namespace zm::tool
