// The way of a position from one system to another: zone to zone, width to width, and, with parameters, datum to datum.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zenro/coord/datum_parameters.h"
#include "tools/zenro/coord/plane_system.h"

namespace zm::tool {

/// One side of a transformation.
struct Side {
    PlaneSystem plane;  // of degrees only the family counts
    PointKind kind = PointKind::plane;
};

struct Transformation {
    Side from, to;
    std::optional<SevenParameters> seven;
    std::optional<FourParameters> four;  // plane to plane, on the numbers as they stand
    bool ellipsoidalHeights = false;     // heights change with the datum; else they stay as they are

    /// Throws Failure (kUsage) where the parts do not fit: a change of family needs seven or four parameters.
    void Check() const;
    /// first is the northing or latitude, second the easting or longitude; a height that is NaN counts as 0 and
    /// stays none. \return what is wrong, or empty
    std::string Apply(double& first, double& second, double& height) const;
};

/// The common points of a file: no, position in the first system, position in the second; five columns, or seven with
/// heights. Throws Failure (kNoInput) for a line that is none.
struct CommonPosition {
    std::string name;
    double from[3] = {}, to[3] = {};  // first, second, height
    bool hasHeights = false;
};
std::vector<CommonPosition> ReadCommonPoints(const std::string& file, const Transformation& sides, AngleForm angles);

/// Estimates seven parameters, or four, from common points and puts them into the transformation. Throws Failure
/// (kFailed) where the points do not suffice.
/// \return lines to show: the parameters, the residuals of each point, and their mean square
std::vector<std::string> EstimateFrom(const std::vector<CommonPosition>& points, bool sevenParameters,
                                      Transformation& transformation);

}  // namespace zm::tool
