// A view that a window wants drawn, and what came of it.
#pragma once

#include <cstddef>
#include <cstdint>

#include <nlohmann/json.hpp>

namespace zm::tool {

/// What of the map, how large, how turned.
struct ViewRequest {
    std::uint32_t number = 0;   // of the picture
    int slot = 0;               // 0 or 1
    int width = 0, height = 0;  // pixels
    double x = 0.0, y = 0.0;    // of the plane, in the middle
    double pixel = 1.0;         // ground metres
    double rotation = 0.0;      // degrees, counter-clockwise
    double scale = 1000.0;      // of the symbols
    int labels = -1;            // 1: drawn, 0: not, -1: where that is quick
    bool monochrome = false;
    static ViewRequest FromJson(const nlohmann::json& json);
};

/// What came of it.
struct ViewDrawn {
    bool labels = false;       // they are drawn, or there are none that could be read
    std::size_t features = 0;  // whose boxes meet the view
};

}  // namespace zm::tool
