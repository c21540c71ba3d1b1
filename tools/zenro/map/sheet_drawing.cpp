#include "tools/zenro/map/sheet_drawing.h"

#include <algorithm>

#include "tools/zenro/map/contour_interval.h"
#include "tools/zenro/map/label_placer.h"
#include "tools/zenro/map/shapes.h"
#include "tools/zenro/map/symbol_extent.h"

namespace zm::tool {

void SetClip(CTqDraw& context, const Page& page) {
    if (page.clip.empty()) {
        context.SetCutArea(page.sheet.x1, page.sheet.y1, page.sheet.x2, page.sheet.y2);
        context.SetDoCut(1);
        return;
    }
    Chain clip = page.clip.front();
    context.SetCutArea(static_cast<int>(clip.size()), clip.x.data(), clip.y.data());
    context.SetDoCut(2);
}

namespace {

// True if a part of a shape lies inside the neat line.
bool MeetsMap(const Shape& shape, const Page& page) {
    if (!Touches(shape, page.sheet)) return false;
    if (page.clip.empty()) return true;
    const Shape clip = page.ClippedArea();
    Masks map(page);
    map.Add(clip);
    const Chain& chain = shape.chains.front();
    if (map.Covers(chain.x.front(), chain.y.front())) return true;
    if (shape.kind == GeometryKind::area && Inside(shape, clip.chains.front().x.front(), clip.chains.front().y.front()))
        return true;
    double outside = 0.0;
    for (const Chain& piece : map.Outside(chain)) outside += LengthOf(piece);
    return outside < LengthOf(chain) - 1e-6;
}

}  // namespace

void LookAtFeatures(FeatureStore& store, const StoreFilter& filter, const Page& page, Painter& painter, Cover& cover,
                    MapMasks& masks, Survey& survey) {
    store.ForEach(filter, [&](const Feature& feature) {
        for (const Shape& raw : feature.shapes) {
            const auto uses = UsesOf(feature, raw.kind);
            if (uses.empty()) continue;
            const Shape shape = painter.Turned(raw);
            if (!painter.OnSheet(shape)) continue;
            ++survey.shapes;
            survey.meets = survey.meets || painter.Meets(shape);
            if (survey.legend && MeetsMap(shape, page))
                for (const Use* use : uses) survey.legend->Take(*use->rule, raw.kind);
            for (const Use* use : uses) {
                survey.levels.insert(use->rule->LevelOf(raw.kind));
                if (!use->label.empty()) survey.labelled.insert(raw.kind);
                masks.Take(shape, *use, page);
                if (IsBetweenIntervals(*use, page.scale) && survey.contoursBetween++ == 0) {
                    survey.heightBetween = use->height;
                    survey.interval = IntervalOf(*use->rule, page.scale);
                }
            }
            const bool road =
                std::any_of(uses.begin(), uses.end(), [](const Use* use) { return use->roadWidth > 0.0; });
            if (raw.kind != GeometryKind::line || !road)
                for (const Chain& chain : shape.chains) cover.MarkLine(chain);
            if (raw.kind == GeometryKind::area)
                for (const Use* use : uses)
                    if (painter.FillsWithLines(*use->rule)) cover.MarkArea(shape);
            if (raw.kind != GeometryKind::point) continue;
            const Chain& point = shape.chains.front();
            for (const Use* use : uses) {
                const Box& extent = ExtentOfSymbol(use->rule->symbol);
                if (extent.empty()) continue;
                cover.MarkBox(point.x[0] + page.Ground(extent.x1), point.y[0] + page.Ground(extent.y1),
                              page.Ground(extent.x2 - extent.x1), page.Ground(extent.y2 - extent.y1), 0.0,
                              Cover::symbol);
            }
        }
    });
    masks.Finish(page);
    for (const Rule* rule : masks.roads.rules()) {
        const RoadEdges& edges = masks.roads.EdgesOf(*rule);
        for (const auto* lines : {&edges.ground, &edges.bridges, &edges.tunnels, &edges.portals})
            for (const Chain& edge : *lines) cover.MarkLine(edge);
    }
}

void PlaceLabels(FeatureStore& store, const StoreFilter& filter, const Page& page, const Painter& painter,
                 TqNoteLayBase& notes, Cover& cover, MapMasks& masks, Survey& survey,
                 const std::function<void()>& step) {
    LabelPlacer placer(page, notes, cover, masks.sense);
    for (const GeometryKind kind : {GeometryKind::point, GeometryKind::line, GeometryKind::area}) {
        if (survey.labelled.count(kind) == 0) continue;
        StoreFilter labelled = filter;
        labelled.labelledKinds = 1u << static_cast<unsigned>(kind);
        store.ForEach(labelled, [&](const Feature& feature) {
            step();
            for (const Shape& raw : feature.shapes) {
                if (raw.kind != kind) continue;
                for (const Use* use : UsesOf(feature, kind)) {
                    if (use->label.empty()) continue;
                    if (use->rule->index > 0 && !IsIndexContour(*use, page.scale)) continue;
                    const Shape shape = painter.Turned(raw);
                    if (BoxOf(shape.chains.front()).Meets(page.sheet)) placer.Place(shape, *use);
                }
            }
        });
    }
    survey.labels = placer.labels();
    survey.labelsWithoutRoom = placer.withoutRoom();
    masks.Take(survey.labels, notes, page);
}

void DrawStrokes(FeatureStore& store, const StoreFilter& filter, const Survey& survey, Painter& painter,
                 const std::function<void(long)>& step) {
    painter.DrawSea();
    for (const int level : survey.levels) {
        StoreFilter drawn = filter;
        drawn.levels = 1u << level;
        painter.DrawRoads(level);
        store.ForEach(drawn, [&](const Feature& feature) { step(painter.Draw(feature, level)); });
    }
    painter.DrawSlopeTicks();
}

}  // namespace zm::tool
