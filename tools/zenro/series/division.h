// The sheets of a series: which there are, what they are called, what surrounds them, what they will cost.
#pragma once

#include <string>
#include <vector>

#include "tools/zenro/map/source.h"
#include "tools/zenro/series/plan.h"
#include "zenromath/sheets.h"

namespace zm::tool {

struct DivisionOptions {
    double scale = 0.0;
    bool graticule = false;
    sheets::Style style = sheets::Style::code;
    sheets::Division grid;  // of rectangular sheets
    Shape area;             // in the plane, an area or nothing for the box of the data
};

/// The sheets that share ground with the area, along a curve so that neighbours are near in the list, with numbers,
/// outlines and neighbours. Throws Failure (kUsage) where the division does not suit the plane, or gives too many.
std::vector<PlanSheet> Divide(const DivisionOptions& options, const Source& source);

/// A text at a place: what a sheet may be named after.
struct PlaceName {
    double x, y;
    std::string name;  // UTF-8
};
/// Names each sheet after the first place that lies in it.
void NameSheets(const std::vector<PlaceName>& places, std::vector<PlanSheet>& sheets);

/// Fills features and cost from the counts of the sources' indexes. outputs: how many each sheet has.
void EstimateCosts(Source& source, std::size_t outputs, std::vector<PlanSheet>& sheets);

}  // namespace zm::tool
