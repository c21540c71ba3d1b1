// Recordings: the text commands of a drawing context, one a line, in GBK.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/zenro/map/source.h"
#include "zenromath/platform.h"

namespace zm::tool {

/// One command of a recording.
namespace command {
struct Line {
    double x1, y1, x2, y2;
};
struct PolylineBegin {};
struct PolylineEnd {};
struct Arc {
    double cx, cy, r, from, to;  // degrees, as recorded: may pass a full turn
};
struct Pixel {
    double x, y;
    COLORREF color;
};
struct Text {
    int first;
    double x, y, height;
    std::string text;  // GBK
};
struct Pen {
    int style, width;  // width in 0.1 mm of paper
    COLORREF color;
};
struct Font {
    LOGFONTA font;  // height and width in 0.1 mm of paper
};
struct Layer {
    int code;
};
}  // namespace command

using Command = std::variant<command::Line, command::PolylineBegin, command::PolylineEnd, command::Arc, command::Pixel,
                             command::Text, command::Pen, command::Font, command::Layer>;

/// Parses one line; nothing if it is no command.
std::optional<Command> ParseCommand(const std::string& line);

/// What the comment lines at the head of a file say.
struct RecordingHead {
    std::optional<double> scale;
    std::optional<Box> sheet;
    std::optional<std::array<double, 4>> margins;  // left, right, top, bottom, millimetres
};
/// Takes up what a comment line says.
void ReadHeadLine(const std::string& line, RecordingHead& head);

/// What the commands themselves lose; comment lines among them say it, so that a recording is drawn again exactly.
struct Exactly {
    std::optional<double> penWidth;  // of the next pen, millimetres of paper
    struct Text {
        double height, width;  // millimetres of paper
        COLORREF colour;
    };
    std::optional<Text> text;  // of the next font: heights are those of capitals and full characters
    struct Area {
        COLORREF colour;
        std::vector<double> xy;  // one ring
    };
    std::optional<Area> area;  // to be filled now
};
/// Takes what a comment line says of the commands; false where it says nothing of them.
bool ReadExactly(const std::string& line, Exactly& exactly);

/// Writes such lines into the recording that the working context makes.
void TellPenWidth(double millimetres);
void TellTextLook(double height, double width, COLORREF colour);  // ground metres
void TellArea(COLORREF colour, const std::vector<double>& xy);    // ground metres

}  // namespace zm::tool
