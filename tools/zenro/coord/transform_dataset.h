// Whole data sets to another system: geometries change, heights, attributes and names stay.
#pragma once

#include <string>

#include "tools/kit/report.h"
#include "tools/zenro/coord/transformation.h"

namespace zm::tool {

struct DatasetTransform {
    std::string input, output;  // the output's extension says the format
    bool overwrite = false;
    std::string encoding;
    bool fromGiven = false;  // the user named the first side; else the data's own system is taken
    bool toGiven = false;    // the user named the second family; else it is the first one's
};

/// Writes all layers of a data set with their geometries transformed. A feature with a vertex that has no place in the
/// other system is left out and reported. Throws Failure.
/// \return the number of features written
long TransformDataset(const DatasetTransform& options, Transformation transformation, Report& report);

}  // namespace zm::tool
