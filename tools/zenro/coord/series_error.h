// How far the projection's series is off where a place lies far from its central meridian.
#pragma once

namespace zm::tool {

/// Beyond it the series is no projection any more.
constexpr double kSeriesEndDegrees = 10.0;
/// Up to it the series is good to a tenth of a millimetre.
constexpr double kSeriesSureDegrees = 3.2;

/// The distance between the plane position by the series and by PROJ's exact form of the projection.
/// \param selector  ellipsoid as forward takes it
/// \param latitude, offset  degrees; offset is the longitude from the central meridian
/// \return metres; not a number where PROJ has no value
double SeriesError(int selector, double latitude, double offset);

}  // namespace zm::tool
