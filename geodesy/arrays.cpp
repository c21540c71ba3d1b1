// The projection for whole lists of positions. Blocks go through loops without a branch, which the compiler makes
// vectors of; the few positions that need another way than the usual one are done again alone. Every step is the
// inline step of the scalar form, so the bits are the same.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "geodesy/clones.h"
#include "geodesy/gauss_series.h"
#include "geodesy/newton_inverse.h"
#include "geodesy/numeric.h"
#include "geodesy/zone_ellipsoids.h"
#include "geodesy/zone_series.h"
#include "runtime/uses.h"
#include "zenromath/geodesy.h"

namespace zm::geodesy {
namespace {

constexpr std::size_t kBlock = 128;  // positions; the buffers of a block stay in the first cache

struct Block {
    double first[kBlock];   // B or x
    double second[kBlock];  // l or y
    double firstOut[kBlock];
    double secondOut[kBlock];
    double gamma[kBlock];
    double usual[kBlock];  // 1 where the branch-free way holds, else 0
};

ZM_VECTOR_CLONES void ForwardBlock(const GaussEllipsoid g, Block& block, bool withGamma) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double B = block.first[i];
        const double l = block.second[i];
        const SinCos at = SinCosNear(B);
        const PlanePosition plane = ForwardSeries(g, B, l, at);
        block.firstOut[i] = plane.x;
        block.secondOut[i] = plane.y;
        block.usual[i] = std::abs(B) <= kSinCosRange ? 1.0 : 0.0;
    }
    if (!withGamma) return;
    for (std::size_t i = 0; i < kBlock; ++i)
        block.gamma[i] = ForwardConvergence(g, block.second[i], SinCosNear(block.first[i]));
}

ZM_VECTOR_CLONES void BackwardBlock(const GaussEllipsoid g, Block& block) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double x = block.first[i];
        const double y = block.second[i];
        const QuickFootpoint quick = ExpandedFootpoint(g, x);
        const GeodeticPosition position = BackwardSeries(g, quick.footpoint.latitude, y, quick.footpoint.at);
        block.firstOut[i] = position.B;
        block.secondOut[i] = position.l;
        block.usual[i] = quick.holds;
        block.gamma[i] = BackwardConvergence(g, y, quick.footpoint.at);
    }
}

ZM_VECTOR_CLONES void ZoneForwardBlock(const ZoneEllipsoid z, double L0, Block& block) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double B = block.first[i];
        const ZonePlane plane = ZoneForward(z, B, block.second[i] - L0, SinCosNear(B));
        block.firstOut[i] = plane.X;
        block.secondOut[i] = plane.Y;
        block.usual[i] = std::abs(B) <= kSinCosRange ? 1.0 : 0.0;
    }
}

ZM_VECTOR_CLONES void ZoneBackwardBlock(const ZoneEllipsoid z, double L0, Block& block) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double beta = block.first[i] / z.K0;
        const double Bf = ZoneFootpoint(z, beta, SinCosNear(beta));
        const ZonePosition position = ZoneBackward(z, Bf, block.second[i], L0, SinCosNear(Bf));
        block.firstOut[i] = position.B;
        block.secondOut[i] = position.L;
        block.usual[i] = std::abs(beta) <= kSinCosRange - 1.0 ? 1.0 : 0.0;
    }
}

// What one Newton step makes of each position of a block.
struct Stepped {
    double B[kBlock];
    double l[kBlock];
    double unsettled[kBlock];  // 1 where another step is needed, else 0
    double inRange[kBlock];    // 1 where the branch-free way holds, else 0
};

ZM_VECTOR_CLONES void NewtonBlock(const GaussEllipsoid g, const Block& block, Stepped& stepped) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double B = block.firstOut[i];
        const double l = block.secondOut[i];
        const SinCos at = SinCosNear(B);
        const NewtonStep step = NewtonStepAt(g, block.first[i], block.second[i], B, l, at, SinCosNear);
        stepped.B[i] = B + step.B;
        stepped.l[i] = l + step.l;
        stepped.unsettled[i] = step.Size(at) > kNewtonSettled ? 1.0 : 0.0;
        const double inRange = std::abs(B) <= kSinCosRange ? 1.0 : 0.0;
        stepped.inRange[i] = std::abs(step.turn) <= kSinCosRange ? inRange : 0.0;
    }
}

// Takes the step where block.gamma says that the position has not settled.
ZM_VECTOR_CLONES void TakeStep(Block& block, const Stepped& stepped) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double moving = block.gamma[i];
        block.firstOut[i] = moving != 0.0 ? stepped.B[i] : block.firstOut[i];
        block.secondOut[i] = moving != 0.0 ? stepped.l[i] : block.secondOut[i];
        block.usual[i] = moving > stepped.inRange[i] ? 0.0 : block.usual[i];
        block.gamma[i] = std::min(moving, stepped.unsettled[i]);
    }
}

void InverseOfForwardBlock(const GaussEllipsoid& g, Block& block) {
    Stepped stepped;
    BackwardBlock(g, block);
    // What is not usual is done again alone, and must not keep the others waiting.
    std::copy_n(block.usual, kBlock, block.gamma);
    const auto anyMoves = [&] {
        return std::any_of(block.gamma, block.gamma + kBlock, [](double m) { return m != 0.0; });
    };
    for (int i = 0; i < kMostNewtonSteps && anyMoves(); ++i) {
        NewtonBlock(g, block, stepped);
        TakeStep(block, stepped);
    }
}

// Fills a block, runs it, lets the scalar form do what was not usual, and writes out. A short last block is padded
// with zeros, whose results are dropped.
template <class RunBlock, class DoOne>
void InBlocks(std::size_t n, const double* first, const double* second, double* firstOut, double* secondOut,
              double* gamma, RunBlock runBlock, DoOne doOne) {
    Block block;
    for (std::size_t at = 0; at < n; at += kBlock) {
        const std::size_t count = std::min(kBlock, n - at);
        std::copy_n(first + at, count, block.first);
        std::copy_n(second + at, count, block.second);
        std::fill(block.first + count, block.first + kBlock, 0.0);
        std::fill(block.second + count, block.second + kBlock, 0.0);
        runBlock(block);
        for (std::size_t i = 0; i < count; ++i) {
            const bool usual = block.usual[i] != 0.0;
            uses::Count(usual ? uses::listInBlock : uses::listAlone);
            if (!usual) doOne(block.first[i], block.second[i], block.firstOut[i], block.secondOut[i], block.gamma[i]);
        }
        std::copy_n(block.firstOut, count, firstOut + at);
        std::copy_n(block.secondOut, count, secondOut + at);
        if (gamma != nullptr) std::copy_n(block.gamma, count, gamma + at);
    }
}

}  // namespace
}  // namespace zm::geodesy

using namespace zm::geodesy;

void zm::ForwardArray(int ell, std::size_t n, const double* B, const double* l, double* x, double* y, double* gamma) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    InBlocks(
        n, B, l, x, y, gamma, [&](Block& block) { ForwardBlock(g, block, gamma != nullptr); },
        [ell](double B1, double l1, double& x1, double& y1, double& gamma1) {
            forward(ell, B1, l1, &x1, &y1, &gamma1);
        });
}

void zm::BackwardArray(int ell, std::size_t n, const double* x, const double* y, double* B, double* l, double* gamma) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    InBlocks(
        n, x, y, B, l, gamma, [&](Block& block) { BackwardBlock(g, block); },
        [ell](double x1, double y1, double& B1, double& l1, double& gamma1) {
            backward(ell, x1, y1, &B1, &l1, &gamma1);
        });
}

void zm::InverseOfForwardArray(int ell, std::size_t n, const double* x, const double* y, double* B, double* l) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    InBlocks(
        n, x, y, B, l, nullptr, [&](Block& block) { InverseOfForwardBlock(g, block); },
        [ell](double x1, double y1, double& B1, double& l1, double&) { InverseOfForward(ell, x1, y1, B1, l1); });
}

int zm::UTMtoGSArray(znCoordSysTypeConstants coordSys, int centralMeridian, std::size_t n, const double* B,
                     const double* L, double* GX, double* GY) {
    const ZoneEllipsoid* z = FamilyEllipsoid(coordSys);
    if (z == nullptr) return 0;
    const double L0 = Radians(centralMeridian);
    InBlocks(
        n, B, L, GX, GY, nullptr, [&](Block& block) { ZoneForwardBlock(*z, L0, block); },
        [&](double B1, double L1, double& X1, double& Y1, double&) {
            const ZonePlane plane = ZoneForward(*z, B1, L1 - L0, SinCosOf(B1));
            X1 = plane.X;
            Y1 = plane.Y;
        });
    return 1;
}

int zm::GStoUTMArray(znCoordSysTypeConstants coordSys, int centralMeridian, std::size_t n, const double* GX,
                     const double* GY, double* B, double* L) {
    const ZoneEllipsoid* z = FamilyEllipsoid(coordSys);
    if (z == nullptr) return 0;
    const double L0 = Radians(centralMeridian);
    InBlocks(
        n, GX, GY, B, L, nullptr, [&](Block& block) { ZoneBackwardBlock(*z, L0, block); },
        [&](double X1, double Y1, double& B1, double& L1, double&) {
            const ZonePosition position = ZoneInverse(*z, X1, Y1, L0);
            B1 = position.B;
            L1 = position.L;
        });
    return 1;
}
