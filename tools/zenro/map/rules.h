// The rules file: which feature becomes which symbol. Its form is described in docs/zenro/rules.md.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zm::tool {

/// What a feature is, as far as rules ask.
enum class GeometryKind { any, point, line, area };

/// Where a label lies.
enum class LabelPlace {
    byKind,   // point: beside; line: along; area: centre
    beside,   // right of the point, else left, above, below
    centre,   // centred on the point or in the area
    along,    // one run of text in the middle of the line, in its direction
    spread,   // character by character along the line, with the interval of the note class
    decimal,  // the decimal point of the number is on the surveyed point
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

    bool skip = false;                      // not drawn, on purpose
    bool also = false;                      // the rules below are asked too
    double fromScale = 0.0, toScale = 0.0;  // denominators of the scales that the rule is for; 0: no limit on that side
    int layer = 0;     // feature code: layer, colour and width; the symbol or outline where none is named
    int symbol = 0;    // symbol code; 0 draws no symbol
    int lineType = 1;  // 1 polyline, 2 smooth curve, 3 arcs, 4 and 5 circle
    int outline = 0;   // line symbol for the rings of an area, drawn besides the symbol
    int solid = 0;     // colour of the CAD palette that fills areas in drawing files; 0: none
    int penStyle = 0;  // the style of CTQPen
    int penValue = 0;  // the value of CTQPen: colour number and width in 0.1 mm
    char note = '0';   // note class of the label
    std::vector<LabelPiece> label;
    std::vector<LabelPiece> under;  // second line of a label, under a bar
    LabelPlace place = LabelPlace::byKind;
    std::string angleField;
    bool azimuth = false;  // the angle is clockwise from north
    std::string heightField;
    std::string legend;          // its name in the legend of a sheet; empty: the note of its symbol
    double roadWidth = 0.0;      // ground metres: the line is the middle of a road whose edges are drawn
    std::string roadField;       // the field that has it
    std::optional<double> path;  // not drawn in roads, nor along them so many ground metres from an edge
    int index = 0;               // symbol of every fifth contour, which alone has the label; 0: all are alike
    double interval = 0.0;       // metres between contours; 0: by the scale
    std::string slopeField;      // lines with the same value in it are crest and foot of one slope
    bool isCrest = false;        // of the two, the crest
    int sea = 0;  // symbol that fills the sea, the lines being its shore with land on their left; 0: no shore
    bool hasStorey = false;  // one of the next two is given
    int storey = 0;          // 0 on the ground, above it on bridges, below it in tunnels
    std::string storeyField;
    int level = 0;  // 1 is drawn first, 9 last; 0: by kind

    bool IsRoad() const { return roadWidth > 0.0 || !roadField.empty(); }
    /// True of a rule that draws nothing itself, and gives its storey to what the rules below it draw.
    bool OnlyStorey() const { return hasStorey && layer == 0; }
    /// True if the rule is for a scale; 0 is any scale.
    bool IsFor(double scale) const;
    /// The level in force for a kind.
    int LevelOf(GeometryKind of) const;
};

struct Rules {
    std::filesystem::path path;
    std::vector<Rule> rules;
    bool isShipped = false;  // with the program, for data of many kinds: fields that are not there are no slips
};

/// Reads a rules file. Throws Failure: kNoInput if it cannot be read, kUsage with file and line if it is wrong.
Rules ReadRules(const std::filesystem::path& path);
/// Parses the text of a rules file; path is for messages only.
Rules ParseRules(const std::string& text, const std::filesystem::path& path);

/// True if a name fits a pattern with * and ?; letters of ASCII in either case.
bool FitsGlob(const std::string& pattern, const std::string& name);

}  // namespace zm::tool
