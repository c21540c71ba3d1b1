#include "tools/zenro/map/drawing_look.h"

#include <limits>
#include <vector>

#include "zenromath/config.h"
#include "zenromath/dwg.h"

namespace zm::tool {
namespace {

struct Entry {
    int number;
    int red, green, blue;  // as CAD programs show it on white paper
};

// Those of the 255 that print as map colours; the pure ones are for screens.
constexpr Entry kEntries[] = {
    {7, 0, 0, 0},     {8, 128, 128, 128}, {9, 192, 192, 192}, {14, 153, 0, 0},
    {34, 153, 76, 0}, {94, 0, 153, 0},    {134, 0, 153, 153}, {150, 0, 127, 255},
    {174, 0, 0, 153}, {214, 153, 0, 153}, {54, 153, 153, 0},  {30, 255, 127, 0},
};

}  // namespace

COLORREF PaletteColour(int number) {
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    if (palette == nullptr || number < 0 || number >= count) return 0;
    return static_cast<COLORREF>(palette[number]);
}

int DrawingColourOf(COLORREF colour) {
    const int red = static_cast<int>(colour & 0xFF), green = static_cast<int>(colour >> 8 & 0xFF),
              blue = static_cast<int>(colour >> 16 & 0xFF);
    int nearest = kEntries[0].number, least = std::numeric_limits<int>::max();
    for (const Entry& e : kEntries) {
        const int dr = e.red - red, dg = e.green - green, db = e.blue - blue;
        const int distance = dr * dr + dg * dg + db * db;
        if (distance >= least) continue;
        least = distance;
        nearest = e.number;
    }
    return nearest;
}

void SelectDrawingLayer(const std::string& name, int paletteNumber) {
    char solid[] = "0";
    _LDBsetltype(solid);
    _LDBsetcolor(DrawingColourOf(PaletteColour(paletteNumber)));
    std::vector<char> text(name.c_str(), name.c_str() + name.size() + 1);
    _LDBsetlay(text.data());
}

void SelectDrawingLayerOf(int code) {
    const char* name = GetLayerName(code);
    if (name != nullptr) SelectDrawingLayer(name, GetColorNo1(code));
}

}  // namespace zm::tool
