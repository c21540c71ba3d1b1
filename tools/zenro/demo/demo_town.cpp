// The town north of the river.
#include "tools/zenro/demo/demo_town.h"

#include <algorithm>

#include "tools/zenro/demo/demo_terrain.h"

namespace zm::tool::demo {
namespace {

// Streets: their middle lines and half widths.
constexpr double kMainX = 250.0, kMainHalf = 8.0;          // 人民路
constexpr double kCrossY = 332.0, kCrossHalf = 6.0;        // 解放街
constexpr double kEastX = 392.0, kEastHalf = 4.5;          // 学士街
constexpr double kWestX = 122.0, kWestHalf = 2.5;          // 书院巷
constexpr double kLaneY = 424.0, kLaneHalf = 2.0;          // 井亭巷, west of the main street
constexpr double kRiverRoad = 17.0, kRiverRoadHalf = 4.0;  // 滨河路, from the bank
constexpr double kEdge = 500.0;

double RiverRoadAt(double x) {
    return RiverAt(x) + RiverHalfWidth(x) + kRiverRoad;
}

double RiverRoadNorth(double x) {
    return RiverRoadAt(x) + kRiverRoadHalf;
}

Attributes Floors(const char* structure, int floors) {
    const std::string label = floors > 1 ? structure + std::to_string(floors) : structure;
    return {{"structure", Quoted(structure)}, {"floors", std::to_string(floors)}, {"mark", Quoted(label)}};
}

// Kerbs of one side of a street between the mouths of others.
void Kerb(Canvas& canvas, const Line& line) {
    canvas.Polyline("traffic", "kerb", line, {});
}

void AddStreets(Canvas& canvas) {
    const double n = kCrossY + kCrossHalf, s = kCrossY - kCrossHalf;
    const double mw = kMainX - kMainHalf, me = kMainX + kMainHalf;
    const double ew = kEastX - kEastHalf, ee = kEastX + kEastHalf, ww = kWestX - kWestHalf, we = kWestX + kWestHalf;
    const double ln = kLaneY + kLaneHalf, ls = kLaneY - kLaneHalf;
    const auto road = [&](double x) { return Pt{x, RiverRoadNorth(x)}; };
    const auto stretch = [&](double from, double to, bool north) {
        Line line;
        for (double x = from; x < to; x += 8.0) line.push_back({x, RiverRoadAt(x) + (north ? 1 : -1) * kRiverRoadHalf});
        line.push_back({to, RiverRoadAt(to) + (north ? 1 : -1) * kRiverRoadHalf});
        return line;
    };
    // Blocks north of the cross street.
    Kerb(canvas, {{0, n}, {ww, n}, {ww, ls}, {0, ls}});
    Kerb(canvas, {{0, ln}, {ww, ln}, {ww, kEdge}});
    Kerb(canvas, {{we, kEdge}, {we, ln}, {mw, ln}, {mw, kEdge}});
    Kerb(canvas, {{we, ls}, {we, n}, {mw, n}, {mw, ls}, {we, ls}});
    Kerb(canvas, {{me, kEdge}, {me, n}, {ew, n}, {ew, kEdge}});
    Kerb(canvas, {{ee, kEdge}, {ee, n}, {kEdge, n}});
    // Blocks between the cross street and the river road.
    const auto block = [&](double x1, double x2, bool openWest, bool openEast) {
        Line line = stretch(x1, x2, true);
        if (openWest) {
            line.push_back({x2, s});
            line.push_back({x1, s});
        } else if (openEast) {
            std::reverse(line.begin(), line.end());
            line.push_back({x1, s});
            line.push_back({x2, s});
        } else {
            line.push_back({x2, s});
            line.push_back({x1, s});
            line.push_back(line.front());
        }
        Kerb(canvas, line);
    };
    block(0.0, ww, true, false);
    block(we, mw, false, false);
    block(me, ew, false, false);
    block(ee, kEdge, false, true);
    // The river road's south side, open where the bridges begin.
    Kerb(canvas, stretch(0.0, ww, false));
    Kerb(canvas, stretch(we, mw, false));
    Kerb(canvas, stretch(me, kEdge, false));
    // From its mouths to the bridges.
    const double lane = RiverAt(kWestX) + RiverHalfWidth(kWestX) + 4,
                 street = RiverAt(kMainX) + RiverHalfWidth(kMainX) + 7;
    const auto mouth = [&](double x) { return Pt{x, RiverRoadAt(x) - kRiverRoadHalf}; };
    Kerb(canvas, {mouth(ww), {kWestX - 2.2, lane}});
    Kerb(canvas, {mouth(we), {kWestX + 2.2, lane}});
    Kerb(canvas, {mouth(mw), {kMainX - 7, street}});
    Kerb(canvas, {mouth(me), {kMainX + 7, street}});
    static_cast<void>(road);

    canvas.Polyline("traffic", "median", {{kMainX, n + 9}, {kMainX, kEdge}}, {});
    for (const double y : {n + 6.0, s - 6.0}) canvas.Polyline("traffic", "crossing", {{mw, y}, {me, y}}, {});
    canvas.Polyline("names", "street", {{kMainX - 4, 490}, {kMainX - 4, n + 12}}, {{"name", Quoted("人民路")}});
    canvas.Polyline("names", "street", {{me + 8, kCrossY}, {ew - 4, kCrossY}}, {{"name", Quoted("解放街")}});
    canvas.Polyline("names", "lane", {{kWestX, 410}, {kWestX, n + 8}}, {{"name", Quoted("书院巷")}});
    canvas.Polyline("names", "street", {{kEastX, 488}, {kEastX, n + 20}}, {{"name", Quoted("学士街")}});
    canvas.Polyline("names", "lane", {{136, kLaneY}, {mw - 8, kLaneY}}, {{"name", Quoted("井亭巷")}});
    Line river;
    for (double x = 268; x <= 384; x += 8) river.push_back({x, RiverRoadAt(x)});
    canvas.Polyline("names", "street", river, {{"name", Quoted("滨河路")}});

    canvas.Reserve(Rectangle(mw, 60, me, kEdge));
    canvas.Reserve(Rectangle(0, s, kEdge, n));
    canvas.Reserve(Rectangle(ew, 195, ee, kEdge));
    canvas.Reserve(Rectangle(ww, 195, we, kEdge));
    canvas.Reserve(Rectangle(0, ls, mw, ln));
    canvas.Reserve(Rectangle(226, 207, 240, 219));  // the filling station
    Line strip = RiverLine(kRiverRoad + kRiverRoadHalf, -20, 520);
    const Line south = RiverLine(-4.0, -20, 520);
    strip.insert(strip.end(), south.rbegin(), south.rend());
    canvas.Reserve(strip);
}

void AddRiver(Canvas& canvas) {
    const auto bank = [&](double from, double to, int side) {
        Line line;
        const int steps = static_cast<int>((to - from) / 8.0) + 1;
        for (int i = 0; i <= steps; ++i) {
            const double x = from + (to - from) * i / steps;
            line.push_back({x, RiverAt(x) + side * RiverHalfWidth(x)});
        }
        return line;
    };
    // Water and banks end where a bridge covers them.
    for (const auto& [from, to] : {std::pair{0.0, kWestX - 2.2}, {kWestX + 2.2, kMainX - 7.0}, {kMainX + 7.0, 500.0}}) {
        const Line south = bank(from, to, -1);
        const Line north = bank(from, to, 1);  // teeth lie to the right of a line's course: towards the water
        Line ring = south;
        ring.insert(ring.end(), north.rbegin(), north.rend());
        canvas.Area("water", "river", ring, {{"name", Quoted("清溪河")}});
        canvas.Polyline("water", "shore", south, {});
        canvas.Polyline("water", "revetment", north, {});
    }
    canvas.Polyline("names", "river", RiverLine(0, 280, 480), {{"name", Quoted("清溪河")}});
    for (const double x : {60.0, 330.0, 470.0}) {
        const double direction = std::atan2(RiverAt(x + 4) - RiverAt(x - 4), 8.0) * 180.0 / 3.141592653589793;
        canvas.Point("water", "flow", {x, RiverAt(x) - 3}, {{"angle", Number(direction, 1)}});
    }
    // The bridge of the main street, with footways, and the old stone bridge of the lane.
    const double y = RiverAt(kMainX), h = RiverHalfWidth(kMainX) + 7;
    canvas.Area("structures", "road_bridge",
                {{kMainX - 7, y - h}, {kMainX - 7, y + h}, {kMainX + 7, y + h}, {kMainX + 7, y - h}},
                {{"name", Quoted("清溪桥")}});
    canvas.Point("names", "bridge", {kMainX, y}, {{"name", Quoted("清溪桥")}});
    const double y2 = RiverAt(kWestX), h2 = RiverHalfWidth(kWestX) + 4;
    canvas.Area("structures", "stone_bridge",
                {{kWestX - 2.2, y2 - h2}, {kWestX - 2.2, y2 + h2}, {kWestX + 2.2, y2 + h2}, {kWestX + 2.2, y2 - h2}},
                {});
    canvas.Polyline("traffic", "path",
                    {{kWestX, y2 - h2}, {126, 128}, {140, 118}, {160, 112}, {192, 110}, {222, 109}, {245.9, 107}}, {});
    // A landing stage and a groyne.
    const double x3 = 190.0, b3 = RiverAt(x3) + RiverHalfWidth(x3);
    canvas.Area("structures", "jetty", {{x3 - 2, b3}, {x3 - 2, b3 - 6}, {x3 + 2, b3 - 6}, {x3 + 2, b3}}, {});
    canvas.Point("water", "gauge", {200.0, RiverAt(200.0) + RiverHalfWidth(200.0) + 3.0}, {});
    const double x4 = 448.0, b4 = RiverAt(x4) - RiverHalfWidth(x4);
    canvas.Area("structures", "groyne", {{x4 - 1.5, b4}, {x4 - 1.5, b4 + 6}, {x4 + 1.5, b4 + 6}, {x4 + 1.5, b4}}, {});
}

// A walled compound with its gate on the south side.
void Compound(Canvas& canvas, double x1, double y1, double x2, double y2, double gate, double half) {
    canvas.Polyline("buildings", "wall", {{gate + half, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}, {gate - half, y1}},
                    {});
    canvas.Point("buildings", "gate_pier", {gate - half, y1}, {});
    canvas.Point("buildings", "gate_pier", {gate + half, y1}, {});
}

void AddSchool(Canvas& canvas) {
    Compound(canvas, 264, 342, 382, 494, 300, 4);
    canvas.Area("buildings", "public_building", Rectangle(272, 372, 332, 386), Floors("砼", 5));
    canvas.Area("buildings", "public_building", Rectangle(272, 404, 332, 416), Floors("砼", 5));
    canvas.Area("buildings", "building", Rectangle(346, 350, 374, 364), Floors("砼", 3));
    canvas.Area("buildings", "building", Rectangle(346, 372, 360, 396), Floors("混", 2));
    canvas.Area("structures", "overhead_corridor", {{298, 386}, {298, 404}, {302, 404}, {302, 386}}, {});
    Line track;  // two straights and two half circles
    const double cx1 = 300, cx2 = 346, cy = 456, r = 28;
    for (int i = 0; i <= 32; ++i) {
        const double a = -1.5707963 + 3.14159265 * i / 32;
        track.push_back({cx2 + r * std::cos(a), cy + r * std::sin(a)});
    }
    for (int i = 0; i <= 32; ++i) {
        const double a = 1.5707963 + 3.14159265 * i / 32;
        track.push_back({cx1 + r * std::cos(a), cy + r * std::sin(a)});
    }
    canvas.Area("buildings", "sports_ground", track, {{"name", Quoted("操场")}});
    canvas.Area("buildings", "shed", Rectangle(346, 402, 376, 407), {});
    canvas.Point("buildings", "flagpole", {300, 360}, {});
    for (double x = 272; x <= 376; x += 8) canvas.Point("vegetation", "row_tree", {x, 491}, {});
    canvas.Area("vegetation", "flower_bed", Rectangle(312, 350, 336, 362), {});
    canvas.Point("names", "unit", {324, 395}, {{"name", Quoted("清溪中学")}});
    canvas.Reserve(Rectangle(263, 340, 384, 496));
}

void AddSquare(Canvas& canvas) {
    canvas.Area("traffic", "paved_square", Rectangle(268, 287, 336, 318), {{"name", Quoted("文化广场")}});
    canvas.Area("vegetation", "lawn", Rectangle(272, 266, 296, 284), {});
    canvas.Area("vegetation", "lawn", Rectangle(308, 266, 332, 284), {});
    canvas.Point("buildings", "monument", {302, 300}, {});
    canvas.Point("buildings", "fountain", {302, 274}, {});
    canvas.Point("buildings", "statue", {322, 304}, {});
    canvas.Area("buildings", "public_building",
                {{344, 270}, {380, 270}, {380, 312}, {362, 312}, {362, 288}, {344, 288}}, Floors("砼", 8));
    canvas.Area("structures", "porch", {{352, 270}, {352, 265}, {364, 265}, {364, 270}}, {});
    canvas.Area("structures", "colonnade", {{346, 294}, {357, 294}, {357, 310}, {346, 310}}, {});
    canvas.Point("names", "unit", {362, 262.5}, {{"name", Quoted("清溪镇人民政府")}});
    canvas.Point("control", "benchmark", {340, 322},
                 {{"name", Quoted("Ⅲ清3")}, {"height", Number(HeightAt({340, 322}), 3)}});
    canvas.Reserve(Rectangle(264, 258, 384, 322));
}

void AddFactory(Canvas& canvas) {
    Compound(canvas, 402, 342, 496, 494, 440, 4);
    canvas.Area("buildings", "industrial_building", Rectangle(408, 360, 468, 382), Floors("混", 1));
    canvas.Area("buildings", "industrial_building", Rectangle(408, 400, 468, 424), Floors("混", 1));
    canvas.Area("buildings", "building", Rectangle(474, 356, 492, 384), Floors("砼", 4));
    canvas.Area("buildings", "shed", Rectangle(474, 400, 492, 420), {});
    canvas.Area("structures", "conveyor", {{430, 382}, {430, 400}, {434, 400}, {434, 382}}, {});
    canvas.Point("buildings", "chimney", {484, 434}, {});
    canvas.Point("buildings", "water_tower", {412, 436}, {});
    canvas.Point("buildings", "tank", {436, 436}, {});
    canvas.Point("buildings", "tank", {448, 436}, {});
    canvas.Point("buildings", "crane", {462, 452}, {});
    canvas.Area("buildings", "open_storage", Rectangle(410, 452, 452, 482), {{"name", Quoted("料场")}});
    canvas.Area("buildings", "building", Rectangle(470, 458, 490, 484), Floors("砖", 1));
    canvas.Polyline("utilities", "overhead_pipe", {{412, 430}, {470, 430}, {484, 428}, {484, 420}}, {});
    canvas.Point("utilities", "substation", {492, 348}, {});
    canvas.Point("names", "unit", {454, 391}, {{"name", Quoted("东风机械厂")}});
    canvas.Reserve(Rectangle(399, 340, 500, 496));
}

void AddEstate(Canvas& canvas) {
    for (const double y : {228.0, 258.0, 288.0})
        for (const double x : {404.0, 454.0}) {
            if (y < RiverRoadNorth(x + 20) + 6) continue;
            canvas.Area("buildings", "building", Rectangle(x, y, x + 40, y + 12), Floors("砼", 6));
            if (y + 24 < 306) canvas.Area("vegetation", "lawn", Rectangle(x + 2, y + 16, x + 38, y + 24), {});
        }
    canvas.Area("traffic", "car_park", Rectangle(404, 308, 440, 322), {});
    canvas.Area("structures", "underground_entrance", {{450, 308}, {450, 318}, {464, 318}, {464, 308}}, {});
    canvas.Polyline("buildings", "railing", {{399, 222}, {399, 304}}, {});
    canvas.Point("names", "unit", {472, 303}, {{"name", Quoted("滨河花园")}});
    canvas.Reserve(Rectangle(398, 222, 500, 324));
}

void AddTemple(Canvas& canvas) {
    canvas.Polyline("buildings", "wall", {{32, 436}, {96, 436}, {96, 492}, {20, 492}, {20, 436}, {26, 436}}, {});
    canvas.Area("buildings", "landmark_building", Rectangle(44, 466, 76, 482), Floors("砖", 1));
    canvas.Area("buildings", "house", Rectangle(26, 452, 36, 476), Floors("砖", 1));
    canvas.Area("buildings", "house", Rectangle(82, 452, 92, 476), Floors("砖", 1));
    canvas.Point("buildings", "temple", {60, 458}, {});
    canvas.Point("vegetation", "notable_tree", {40, 446}, {});
    canvas.Point("vegetation", "notable_tree", {80, 446}, {});
    canvas.Point("names", "unit", {60, 448}, {{"name", Quoted("清溪寺")}});
    canvas.Reserve(Rectangle(18, 432, 98, 494));
}

// A house of a row: its corners, seldom with a wing behind.
Line House(Canvas& canvas, double x, double y, double width, double depth, Pt about, double degrees) {
    Line house = Rectangle(x, y, x + width, y + depth);
    if (width > 9.5 && canvas.Int(0, 3) == 0) {
        const double wing = canvas.Real(3.0, 4.2), length = canvas.Real(2.0, 3.4);
        house = {{x, y},
                 {x + width, y},
                 {x + width, y + depth + length},
                 {x + width - wing, y + depth + length},
                 {x + width - wing, y + depth},
                 {x, y + depth}};
    }
    const double a = degrees * 3.141592653589793 / 180.0, c = std::cos(a), s = std::sin(a);
    for (Pt& p : house) {
        const double dx = p.x - about.x, dy = p.y - about.y;
        p = {about.x + dx * c - dy * s, about.y + dx * s + dy * c};
    }
    return house;
}

// Rows of old houses wall to wall, with yards between; each quarter lies a little askew in its own way.
void AddHouses(Canvas& canvas) {
    struct Quarter {
        double x1, y1, x2, y2;
        int least, most;
        double degrees;
    };
    const Quarter quarters[] = {{4, 342, 117, 419, 1, 3, 0.8},   {127, 341, 240, 419, 1, 3, -0.6},
                                {127, 430, 240, 497, 1, 2, 0.0}, {100, 430, 117, 497, 1, 2, 0.0},
                                {4, 205, 117, 323, 1, 2, 4.0},   {128, 198, 240, 323, 2, 4, -5.5},
                                {262, 196, 384, 254, 1, 3, -4.5}};
    std::vector<Line> built;
    for (const Quarter& q : quarters) {
        const Pt about{(q.x1 + q.x2) / 2, (q.y1 + q.y2) / 2};
        const Line block = Rectangle(q.x1, q.y1, q.x2, q.y2);
        for (double y = q.y1 - 4.0; y < q.y2;) {
            const double depth = canvas.Real(7.5, 11.0);
            for (double x = q.x1 + canvas.Real(-3.0, 5.0); x < q.x2;) {
                const int units = canvas.Int(1, 4);
                const double front = canvas.Real(0.0, 2.2);
                for (int u = 0; u < units; ++u) {
                    const double width = canvas.Real(6.5, 12.5), back = canvas.Real(0.0, 2.0);
                    const Line house = House(canvas, x, y + front, width, depth - back, about, q.degrees);
                    x += width;
                    const bool inside = std::all_of(house.begin(), house.end(), [&](Pt p) { return Inside(block, p); });
                    if (!inside || !canvas.IsFree(house, 1.0) || canvas.Int(0, 24) == 0) continue;
                    built.push_back(house);
                    const int floors = canvas.Int(q.least, q.most);
                    const char* structure = floors >= 3 ? "砼" : floors == 2 ? "混" : "砖";
                    const bool simple = floors == 1 && canvas.Int(0, 9) == 0;
                    if (simple)
                        canvas.Area("buildings", "simple_house", house, {{"mark", Quoted("简")}});
                    else
                        canvas.Area("buildings", "house", house, Floors(structure, floors));
                }
                x += canvas.Real(1.5, 8.0);
            }
            y += depth + canvas.Real(3.6, 7.5);
        }
    }
    for (const Line& house : built) canvas.Reserve(house);
}

void AddStreetFurniture(Canvas& canvas) {
    for (double y = 212; y < 498; y += 32) {
        if (std::fabs(y - kCrossY) < 12) continue;
        canvas.Point("utilities", "lamp", {kMainX - kMainHalf - 1.4, y}, {});
        canvas.Point("vegetation", "row_tree", {kMainX + kMainHalf + 1.6, y + 9}, {});
        canvas.Point("vegetation", "row_tree", {kMainX + kMainHalf + 1.6, y + 17}, {});
    }
    const char* manholes[] = {"sewer", "storm_sewer", "water_valve", "telecom", "gas"};
    for (int i = 0; i < 10; ++i)
        canvas.Point("utilities", std::string("manhole_") + manholes[i % 5],
                     {kMainX + (i % 2 == 0 ? 4.2 : -4.2), 216.0 + 28.5 * i}, {});
    for (double x = 20; x < 490; x += 52) {
        if (std::fabs(x - kMainX) < 12 || std::fabs(x - kWestX) < 7 || std::fabs(x - kEastX) < 8) continue;
        canvas.Point("utilities", "grating", {x, kCrossY - kCrossHalf + 0.9}, {});
    }
    canvas.Point("utilities", "hydrant", {260.8, 352}, {});
    canvas.Point("utilities", "traffic_light", {239.5, 319.5}, {});
    canvas.Point("utilities", "traffic_light", {260.8, 339.5}, {});
    canvas.Point("traffic", "bus_stop", {262.5, 252}, {});
    canvas.Point("traffic", "filling_station", {232, 212}, {});
    canvas.Point("utilities", "post_box", {318, 322}, {});
    canvas.Point("utilities", "telephone_box", {380, 322.5}, {});
    canvas.Point("water", "well", {110, 428}, {});
    canvas.Polyline("utilities", "telephone_line", {{116, 206}, {116, 260}, {116, 322}}, {});
    canvas.Point("utilities", "pole", {116, 322}, {});
    canvas.Point("control", "gnss", {388.5, 330},
                 {{"name", Quoted("G021")}, {"height", Number(HeightAt({388, 330}), 3)}});
    canvas.Point("control", "traverse", {190.0, 333.0},
                 {{"name", Quoted("D7")}, {"height", Number(HeightAt({190, 333}), 2)}});
    canvas.Point("control", "traverse", {119.0, 334.0},
                 {{"name", Quoted("D5")}, {"height", Number(HeightAt({119, 334}), 2)}});
    canvas.Point("control", "mapping_point", {244.0, 206.0},
                 {{"name", Quoted("T12")}, {"height", Number(HeightAt({244, 206}), 2)}});
    canvas.Point("names", "town", {180.0, 380.0}, {{"name", Quoted("清溪镇")}});
}

}  // namespace

void AddTown(Canvas& canvas) {
    AddRiver(canvas);
    AddStreets(canvas);
    AddSchool(canvas);
    AddSquare(canvas);
    AddFactory(canvas);
    AddEstate(canvas);
    AddTemple(canvas);
    AddHouses(canvas);
    AddStreetFurniture(canvas);
}

}  // namespace zm::tool::demo
