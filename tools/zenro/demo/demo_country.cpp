// South of the river: fields, ponds and ditches, the railway, the country road, power lines, a hamlet.
#include <algorithm>
#include <cmath>

#include "tools/zenro/demo/demo_terrain.h"
#include "tools/zenro/demo/demo_town.h"

namespace zm::tool::demo {
namespace {

constexpr double kRoadX = 250.0, kRoadHalf = 4.0;  // the main street goes on as a country road
constexpr double kFarmRoadY = 72.0;

double RailAt(double x) {
    return (x - 330.0) * 118.0 / 170.0;
}

double SouthBank(double x) {
    return RiverAt(x) - RiverHalfWidth(x);
}

void AddRoads(Canvas& canvas) {
    const double top = RiverAt(kRoadX) - RiverHalfWidth(kRoadX) - 7;
    for (const double side : {-1.0, 1.0}) {
        const double x = kRoadX + side * kRoadHalf;
        if (side > 0) {
            canvas.Polyline("traffic", "kerb",
                            {{x + 3, top}, {x, top - 8}, {x, kFarmRoadY + 2.4}, {424, kFarmRoadY + 2.4}}, {});
            canvas.Polyline("traffic", "kerb", {{424, kFarmRoadY - 2.4}, {x, kFarmRoadY - 2.4}, {x, 0}}, {});
        } else {
            canvas.Polyline("traffic", "kerb", {{x - 3, top}, {x, top - 8}, {x, 0}}, {});
        }
    }
    canvas.Polyline("names", "street", {{kRoadX, 120}, {kRoadX, 20}}, {{"name", Quoted("清凤公路")}});
    canvas.Area("structures", "level_crossing",
                {{424, kFarmRoadY - 2.4}, {440, kFarmRoadY - 2.4}, {440, kFarmRoadY + 2.4}, {424, kFarmRoadY + 2.4}},
                {});
    canvas.Polyline("traffic", "cart_road", {{440, kFarmRoadY}, {470, 70}, {500, 66}}, {});
    canvas.Polyline("traffic", "railway", {{330, 0}, {412, RailAt(412)}, {500, 118}}, {});
    // Slopes fall to the right of a line's course: one on each side of the railway.
    const double across = 3.2 * std::sin(std::atan2(118.0, 170.0)), up = 3.2 * std::cos(std::atan2(118.0, 170.0));
    canvas.Polyline("traffic", "embankment", {{344 + across, RailAt(344) - up}, {408 + across, RailAt(408) - up}}, {});
    canvas.Polyline("traffic", "embankment", {{408 - across, RailAt(408) + up}, {344 - across, RailAt(344) + up}}, {});
    canvas.Polyline("traffic", "row_of_trees", {{256.5, 8}, {256.5, 64}}, {});
    canvas.Polyline("traffic", "row_of_trees", {{243.5, 8}, {243.5, 128}}, {});
    canvas.Point("traffic", "milestone", {257.5, 100}, {});
    canvas.Reserve(Rectangle(kRoadX - 6, 0, kRoadX + 6, 150));
    canvas.Reserve(Rectangle(250, kFarmRoadY - 4, 500, kFarmRoadY + 4));
    canvas.Reserve({{326, 0}, {334, 0}, {500, 114}, {500, 122}});
}

void AddWater(Canvas& canvas) {
    canvas.Area("water", "pond", {{272, 88}, {300, 84}, {318, 94}, {314, 114}, {288, 120}, {268, 108}},
                {{"name", Quoted("塘")}});
    canvas.Area("water", "fish_farm", {{270, 125}, {312, 124}, {312, 133}, {270, 136}}, {});
    // A ditch from the river to the fields: sluice at its mouth, culvert under the road.
    canvas.Polyline("water", "ditch", {{340, SouthBank(340) - 9.5}, {340, 77}}, {});
    canvas.Polyline("water", "ditch", {{340, 67}, {340, 24}, {325, 0}}, {});
    canvas.Polyline("water", "dry_ditch", {{262, 40}, {300, 40}, {330, 44}}, {});
    canvas.Area("structures", "culvert", {{338.6, 67}, {338.6, 77}, {341.4, 77}, {341.4, 67}}, {});
    const double mouth = SouthBank(340);
    canvas.Area("structures", "sluice",
                {{334, mouth - 9.5}, {346, mouth - 9.5}, {346, mouth - 2.5}, {334, mouth - 2.5}}, {});
    for (const double side : {-1.4, 1.4})  // the banks of the ditch's mouth
        canvas.Polyline("water", "shore", {{340 + side, SouthBank(340 + side)}, {340 + side, mouth - 2.5}}, {});
    canvas.Polyline("water", "dike", {{262, SouthBank(262) - 6}, {290, SouthBank(290) - 6}, {330, SouthBank(330) - 9}},
                    {});
    canvas.Polyline("water", "dike", {{350, SouthBank(350) - 9}, {380, SouthBank(380) - 7}, {420, SouthBank(420) - 7}},
                    {});
    canvas.Point("water", "pumping_station", {352, SouthBank(352) - 16}, {{"name", Quoted("抽")}});
    canvas.Area("structures", "aqueduct", Turned({386, RailAt(386)}, 26, 3, 124.8), {});
    canvas.Polyline("water", "ditch", {{340, 62}, {356, 59}, {368, 54}, {378.6, RailAt(386) + 10.7}}, {});
    canvas.Polyline("water", "ditch", {{393.4, RailAt(386) - 10.7}, {402, 14}, {400, 0}}, {});
    canvas.Reserve(Rectangle(334, 30, 346, 150));
    canvas.Reserve(Turned({386, RailAt(386)}, 32, 10, 124.8));
    canvas.Reserve(Rectangle(442, 2, 498, 28));
    canvas.Reserve(Rectangle(262, 80, 322, 124));
    canvas.Reserve(Rectangle(266, 122, 316, 138));
}

void AddFields(Canvas& canvas) {
    canvas.Area("vegetation", "paddy", {{348, 80}, {418, 80}, {418, 108}, {380, 115}, {348, 120}}, {});
    canvas.Area("vegetation", "dry_field", {{262, 6}, {322, 6}, {330, 36}, {262, 36}}, {});
    canvas.Area("vegetation", "vegetables", {{262, 44}, {326, 48}, {326, 64}, {262, 64}}, {});
    canvas.Area("vegetation", "orchard", {{372, 4}, {436, 4}, {441, 28}, {418, 50}}, {});
    canvas.Area("vegetation", "greenhouse", {{446, 6}, {494, 6}, {494, 24}, {464, 24}}, {});
    canvas.Area("vegetation", "reeds",
                {{12, SouthBank(12) - 2}, {40, SouthBank(40) - 2}, {40, SouthBank(40) - 11}, {12, SouthBank(12) - 11}},
                {});
    canvas.Polyline("vegetation", "land_use_boundary", {{441, 69}, {470, 67}, {500, 63}}, {});
    canvas.Polyline("boundaries", "village", {{360, 0}, {362, 24}, {378, 62}, {430, 62}, {446, 60.5}, {500, 60.5}}, {});
    canvas.Polyline("boundaries", "parcel", {{446, 28}, {480, 28}, {496, 44}, {496, 58}, {446, 58}, {446, 28}}, {});
    for (const Pt p : {Pt{446, 28}, Pt{480, 28}, Pt{496, 44}, Pt{496, 58}, Pt{446, 58}})
        canvas.Point("boundaries", "parcel_corner", p, {});
}

// Between the railway and the river, its houses along the line.
void AddHamlet(Canvas& canvas) {
    constexpr double kAlongTheLine = 34.8;  // degrees
    for (int i = 0; i < 3; ++i)
        canvas.Area("buildings", "house", Turned({430.0 + i * 9.8, 98.0 + i * 6.6}, 10, 8.5, kAlongTheLine),
                    {{"structure", Quoted("混")}, {"floors", "2"}, {"mark", Quoted("混2")}});
    canvas.Area("buildings", "ruined_house", Turned({450, 95}, 8, 6, kAlongTheLine), {});
    canvas.Area("buildings", "house_under_construction", Turned({472, 112}, 9, 7, kAlongTheLine),
                {{"mark", Quoted("建")}});
    canvas.Polyline("buildings", "hedge", {{420, 88}, {420, 103}, {438, 117}}, {});
    canvas.Polyline("buildings", "fence", {{458, 84.5}, {500, 84.5}}, {});
    canvas.Point("names", "village", {437, 87}, {{"name", Quoted("小园村")}});
    canvas.Point("vegetation", "broadleaf", {480, 122}, {});
    canvas.Point("vegetation", "fruit_tree", {476, 89}, {});
    canvas.Point("vegetation", "fruit_tree", {486, 94}, {});
    canvas.Reserve({{420, 80}, {444, 82}, {496, 116}, {496, 128}, {420, 118}});
}

void AddPower(Canvas& canvas) {
    const Line line = {{211, -8}, {236, 60}, {232, 132}, {228, 196}};
    canvas.Polyline("utilities", "high_voltage_line", line, {});
    for (std::size_t i = 1; i < line.size(); ++i) canvas.Point("utilities", "pylon", line[i], {});
    Line poles;
    for (double x = 270; x <= 420; x += 25) poles.push_back({x, 78.5});
    canvas.Polyline("utilities", "distribution_line", poles, {});
    for (const Pt& p : poles) canvas.Point("utilities", "pole", p, {});
    canvas.Point("utilities", "pole_transformer", {424, 78.5}, {});
    canvas.Point("utilities", "mast", {490, 120}, {});
}

}  // namespace

void AddCountry(Canvas& canvas) {
    AddRoads(canvas);
    AddWater(canvas);
    AddFields(canvas);
    AddHamlet(canvas);
    AddPower(canvas);
}

}  // namespace zm::tool::demo
