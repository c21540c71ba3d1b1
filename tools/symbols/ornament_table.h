// What the tools know of the 39 ornaments: the codes that they lean on, and points to show them with.
#pragma once

#include <span>
#include <vector>

namespace zm::tool::symbols {

constexpr int kOrnaments = 39;

struct OrnamentPoint {
    double x, y;  // metres on the ground, the size of the structure itself
};

struct Ornament {
    int number;
    std::vector<int> lines;   ///< codes of line symbols that it draws with
    std::vector<int> points;  ///< codes of graphic symbols that it places
    /// Control points of an example in the order that the structure needs: the four-point ones run anticlockwise.
    std::vector<OrnamentPoint> example;
};

/// All 39, by number from 1.
std::span<const Ornament> Ornaments();

/// Whether an ornament draws anything: 1 to 39 without 21, 27, 29, 31.
bool OrnamentDraws(int number);

}  // namespace zm::tool::symbols
