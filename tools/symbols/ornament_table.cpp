#include "tools/symbols/ornament_table.h"

namespace zm::tool::symbols {

namespace {

using Points = std::vector<OrnamentPoint>;

/// Rails from left to right, p1 p2 below and p3 p4 above.
Points Rails(double length, double width) {
    return {{0, 0}, {length, 0}, {length, width}, {0, width}};
}

/// The base p1 p2 at the left, for figures that point from it.
Points FromTheLeft(double length, double width) {
    return {{0, width}, {0, 0}, {length, 0}, {length, width}};
}

/// Two curved edges of four points each, the second one back.
Points Curve() {
    return {{0, 0}, {10, 1.5}, {20, 1.5}, {30, -1}, {31, 7}, {20.5, 9.5}, {9.5, 9.5}, {-1, 8}};
}

const std::vector<Ornament>& Table() {
    static const std::vector<Ornament> table = {
        {1, {834}, {}, Rails(24, 7)},         {2, {834, 221}, {}, Rails(24, 7)},
        {3, {834}, {42}, FromTheLeft(8, 14)}, {4, {834}, {90}, Rails(30, 8)},
        {5, {834}, {91}, Rails(30, 8)},       {6, {834, 221}, {}, Rails(20, 6)},
        {7, {}, {}, FromTheLeft(14, 7)},      {8, {834, 221}, {}, Rails(20, 6)},
        {9, {}, {54, 984, 16}, Curve()},      {10, {221}, {}, Rails(26, 7)},
        {11, {981}, {54, 984, 16}, Curve()},  {12, {}, {}, Rails(10, 8)},
        {13, {221}, {}, Rails(26, 6)},        {14, {221}, {}, Rails(26, 7)},
        {15, {221}, {}, Rails(26, 7)},        {16, {}, {3}, Rails(28, 4)},
        {17, {221}, {}, Rails(26, 7)},        {18, {}, {}, Rails(9, 9)},
        {19, {221}, {}, Rails(28, 8)},        {20, {}, {}, Rails(28, 8)},
        {21, {}, {}, Rails(24, 7)},           {22, {}, {54, 984, 93, 95, 16}, Curve()},
        {23, {}, {}, FromTheLeft(26, 5)},     {24, {221}, {}, {{0, 7}, {24, 7}, {24, 0}, {0, 0}}},
        {25, {221}, {}, Rails(24, 7)},        {26, {}, {93, 95}, Rails(24, 7)},
        {27, {}, {}, Rails(24, 7)},           {28, {}, {}, Rails(24, 7)},
        {29, {}, {}, Rails(24, 7)},           {30, {834}, {}, Rails(14, 9)},
        {31, {}, {}, Rails(24, 7)},           {32, {834}, {3}, Rails(20, 8)},
        {33, {}, {}, Rails(14, 6)},           {34, {834}, {}, Rails(32, 4)},
        {35, {337}, {}, Rails(32, 4)},        {36, {}, {}, Rails(32, 4)},
        {37, {}, {}, Rails(24, 7)},           {38, {}, {}, Rails(24, 7)},
        {39, {}, {}, Rails(24, 7)},
    };
    return table;
}

}  // namespace

std::span<const Ornament> Ornaments() {
    return Table();
}

bool OrnamentDraws(int number) {
    return number >= 1 && number <= kOrnaments && number != 21 && number != 27 && number != 29 && number != 31;
}

}  // namespace zm::tool::symbols
