// Angles as surveyors write them.
#pragma once

#include <string>
#include <string_view>

namespace zm::tool {

/// How an angle is written where nothing marks its parts: 120.75 in degrees, 120.45 as packed degrees.mmss, or degrees,
/// minutes and seconds with marks or blanks.
enum class AngleForm { decimal, packed, dms };

/// What was read of an angle.
struct AngleText {
    double degrees = 0.0;
    char hemisphere = '\0';  // N, S, E, W where the text has one; the sign follows it
    std::string wrong;       // why it is no angle; empty if it is one
};

/// Takes an angle from the front of a text and moves the text past it. Known are 120.75, 120°45'00.5", 120d45m0.5s,
/// 120:45:00.5, 120-45-00.5, 120度45分0.5秒, the typographic marks ′ and ″, letters N E S W and 北纬 南纬 东经 西经
/// before it or N E S W after it, and blanks between the parts where the form is dms. Minutes and seconds of 60 and more
/// are refused, in the packed form too.
AngleText TakeAngle(std::string_view& text, AngleForm form);

/// Degrees in the given form: decimals count the digits after the point of degrees, of packed degrees, or of seconds.
std::string AngleAs(double degrees, AngleForm form, int decimals);

}  // namespace zm::tool
