#include "tools/zenro/map/road_band.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zm::tool {
namespace {

using Corners = std::vector<std::pair<double, double>>;

constexpr double kChord = 2.0 * std::numbers::pi / 24;  // radians, of round parts
constexpr double kInto =
    0.01;  // radians that the outer side of a bend reaches into the pieces beside it, without a seam
constexpr double kLongestTurn = 2.0;  // radians in all that a band turns within one polygon: it cannot meet itself

struct Piece {
    double x, y;       // where it begins
    double direction;  // radians
    double length;
};

void AddArc(Corners& corners, double x, double y, double radius, double from, double turn) {
    const int chords = std::max(1, static_cast<int>(std::ceil(std::fabs(turn) / kChord)));
    for (int i = 0; i <= chords; ++i) {
        const double a = from + turn * i / chords;
        corners.emplace_back(x + radius * std::cos(a), y + radius * std::sin(a));
    }
}

double TurnBetween(const Piece& before, const Piece& after) {
    return std::remainder(after.direction - before.direction, 2.0 * std::numbers::pi);
}

// The outer side of a bend.
void AddWedge(OGRMultiPolygon& all, const Piece& before, const Piece& after, double half) {
    const double turn = TurnBetween(before, after);
    if (turn == 0.0) return;
    const double side = turn > 0.0 ? -1.0 : 1.0, from = before.direction + side * std::numbers::pi / 2.0;
    const auto into = [&](double a) { return std::pair(after.x + half * std::cos(a), after.y + half * std::sin(a)); };
    Corners corners = {{after.x, after.y}, into(from + side * kInto)};
    AddArc(corners, after.x, after.y, half, from, turn);
    corners.push_back(into(from + turn - side * kInto));
    AddRing(all, corners);
}

// How far the inner side of a bend is shortened.
double Shortened(double turn, double half) {
    return half * std::tan(std::fabs(turn) / 2.0);
}

// A side of a run of pieces, half to the left of its course or, below 0, to the right.
void AddSide(Corners& corners, const std::vector<Piece>& pieces, std::size_t first, std::size_t last, double half) {
    const auto beside = [&](const Piece& piece, double along) {
        const double c = std::cos(piece.direction), s = std::sin(piece.direction);
        corners.emplace_back(piece.x + c * along - s * half, piece.y + s * along + c * half);
    };
    beside(pieces[first], 0.0);
    for (std::size_t i = first; i < last; ++i) {
        const double turn = TurnBetween(pieces[i], pieces[i + 1]);
        if (turn * half > 0.0)
            beside(pieces[i + 1], Shortened(turn, std::fabs(half)));
        else if (turn != 0.0)
            AddArc(corners, pieces[i + 1].x, pieces[i + 1].y, std::fabs(half),
                   pieces[i].direction + std::copysign(std::numbers::pi / 2.0, half), turn);
    }
    beside(pieces[last], pieces[last].length);
}

std::vector<Piece> PiecesOf(const Chain& centre) {
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i + 1 < centre.size(); ++i) {
        const double dx = centre.x[i + 1] - centre.x[i], dy = centre.y[i + 1] - centre.y[i], d = std::hypot(dx, dy);
        if (d >= 1e-6) pieces.push_back({centre.x[i], centre.y[i], std::atan2(dy, dx), d});
    }
    return pieces;
}

}  // namespace

void AddRing(OGRMultiPolygon& all, const Corners& corners) {
    OGRLinearRing ring;
    for (const auto& [x, y] : corners) ring.addPoint(x, y);
    ring.closeRings();
    OGRPolygon polygon;
    polygon.addRing(&ring);
    all.addGeometry(&polygon);
}

void AddDisc(OGRMultiPolygon& all, double x, double y, double radius) {
    Corners corners;
    AddArc(corners, x, y, radius, 0.0, 2.0 * std::numbers::pi - kChord);
    AddRing(all, corners);
}

void AddBand(OGRMultiPolygon& all, const Chain& centre, double half) {
    const std::vector<Piece> pieces = PiecesOf(centre);
    for (std::size_t first = 0, last = 0; first < pieces.size(); first = ++last) {
        double turned = 0.0, taken = 0.0;  // taken: of the last piece, by the bend before it
        while (last + 1 < pieces.size()) {
            const double turn = TurnBetween(pieces[last], pieces[last + 1]), shortened = Shortened(turn, half);
            turned += std::fabs(turn);
            if (turned > kLongestTurn || taken + shortened > pieces[last].length || shortened > pieces[last + 1].length)
                break;
            taken = shortened;
            ++last;
        }
        Corners corners, right;
        AddSide(corners, pieces, first, last, half);
        AddSide(right, pieces, first, last, -half);
        corners.insert(corners.end(), right.rbegin(), right.rend());
        AddRing(all, corners);
        if (last + 1 < pieces.size()) AddWedge(all, pieces[last], pieces[last + 1], half);
    }
}

}  // namespace zm::tool
