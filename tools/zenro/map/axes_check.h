// Coordinates that do not fit the system that the data names, or that name none: what they look like.
#pragma once

#include <string>

class OGRSpatialReference;

namespace zm::tool {

/// A system of the 2000 family in which numbers like these are places of China, as --source takes it: "EPSG:4528" for
/// an easting with zone number 40, "such as EPSG:4549 (central meridian 120)" for one without.
std::string LikelyPlane(double east);

/// What is wrong with a layer whose middle has these numbers, and the option to give; empty if nothing.
/// \param system  the layer's own, null where it names none
/// \param certain  set where the numbers cannot be places of the system at all
std::string WrongAxes(const OGRSpatialReference* system, double x, double y, double width, double height,
                      bool& certain);

}  // namespace zm::tool
