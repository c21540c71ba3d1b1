// The drawing of a sheet from a feature store, in the steps that all outputs and the window of the map share: one look
// at the features, the places of the labels, the strokes.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "tools/zenro/map/cover.h"
#include "tools/zenro/map/labels.h"
#include "tools/zenro/map/legend.h"
#include "tools/zenro/map/map_masks.h"
#include "tools/zenro/map/painter.h"
#include "tools/zenro/store/feature_store.h"

namespace zm::tool {

/// What one look at the features finds: the levels in use, and where the labels lie.
struct Survey {
    std::set<int> levels;
    std::set<GeometryKind> labelled;
    std::vector<PlacedLabel> labels;
    long labelsWithoutRoom = 0;
    long shapes = 0;
    long contoursBetween = 0;  // contours at no whole number of intervals, one of their heights, the interval
    double heightBetween = 0.0, interval = 0.0;
    std::optional<Legend> legend;  // of what lies on the sheet itself; taken up where it is there at the look
    bool meets = false;            // one of them comes near the sheet itself, and not by its box alone
};

/// Puts the map's clip area in force.
void SetClip(CTqDraw& context, const Page& page);

/// Looks at the features that a filter lets pass: what is on the sheet, the paper that they cover, what gives way to
/// what. Call MeasureSymbols before.
void LookAtFeatures(FeatureStore& store, const StoreFilter& filter, const Page& page, Painter& painter, Cover& cover,
                    MapMasks& masks, Survey& survey);

/// Finds the places of the labels once, so that all outputs have the same figure. Points come first: they have the
/// least choice; then lines, then areas. step is called for each feature with a label.
void PlaceLabels(FeatureStore& store, const StoreFilter& filter, const Page& page, const Painter& painter,
                 TqNoteLayBase& notes, Cover& cover, MapMasks& masks, Survey& survey,
                 const std::function<void()>& step);

/// Draws all but the labels on the working context, level by level. step is called for each feature of a level with the
/// number of its shapes that were drawn.
void DrawStrokes(FeatureStore& store, const StoreFilter& filter, const Survey& survey, Painter& painter,
                 const std::function<void(long drawn)>& step);

}  // namespace zm::tool
