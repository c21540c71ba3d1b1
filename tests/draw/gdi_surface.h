// Surfaces that the recorded drawing operations are played on. Each device adapter registers one.
#pragma once

#include <functional>
#include <memory>

#include "zenromath/platform.h"

namespace zm::test {

class GdiSurface {
 public:
    virtual ~GdiSurface() = default;
    virtual HDC dc() = 0;
    virtual int width() const = 0;
    virtual int height() const = 0;
    /// What stands at a pixel by now; CLR_INVALID outside.
    virtual COLORREF At(int x, int y) = 0;
    /// False where a one-bit surface has reduced the colours to two.
    virtual bool KeepsColours() const = 0;
};

/// Every record is played on a fresh white surface of each kind; oneBit asks for one of black and white.
struct GdiSurfaceKind {
    using Maker = std::function<std::unique_ptr<GdiSurface>(int width, int height, bool oneBit)>;
    GdiSurfaceKind(const char* name, Maker make);
};

}  // namespace zm::test
