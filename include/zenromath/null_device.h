// A device that draws nothing and reports that it did: for recordings and drawings, whose pens and fonts are selected
// into a device all the same, for counting, and for measuring what comes before a device.
#pragma once

#include "zenromath/device.h"

namespace zm {

/// Derive from it to take only some of the operations.
class NullDevice : public Device {
 public:
    int Line(const Stroke&, int, int, int, int) override { return 1; }
    COLORREF Dot(int, int, COLORREF color) override { return color; }
    int Arc(const Stroke&, const RECT&, POINT, POINT) override { return 1; }
    int Box(const Stroke*, const Fill&, const RECT&) override { return 1; }
    int FillRegion(const Region&, const Fill&) override { return 1; }
    int Text(const TextStyle&, int, int, std::string_view) override { return 1; }
};

}  // namespace zm
