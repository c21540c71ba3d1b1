// The seam between zenro and Qt. PNG and PDF are drawn by the Qt device, which stands in a module of its own, so that
// no Qt is loaded for SVG, DWG, recordings and coordinates.
//
// The module is the shared library libzenro_qt.so. It links zenromath and Qt, and exports one C function,
// zenro_qt_bridge, which hands out the table below. zenro looks for it beside libzenromath.so (_LFModDir), then beside
// itself and in ../lib, then where the system's loader looks, and says what is missing where it finds none.
//
//     extern "C" __attribute__((visibility("default"))) const ZenroQtBridge* zenro_qt_bridge(int version) {
//         static const ZenroQtBridge bridge = {kZenroQtBridgeVersion, ...};
//         return version == kZenroQtBridgeVersion ? &bridge : nullptr;
//     }
//
// The module makes its QGuiApplication at the first begin, on the offscreen platform where there is no display, and
// keeps it until the process ends. No exception leaves these functions. All texts are UTF-8; error receives at most
// errorSize bytes with an end byte.
#pragma once

#include <cstddef>

namespace zm {
class Device;
}

constexpr int kZenroQtBridgeVersion = 1;

extern "C" {

/// One page to draw on.
struct ZenroQtPage {
    const char* path;    ///< file to write
    const char* format;  ///< "png" or "pdf"
    int width, height;   ///< device pixels
    double dpi;          ///< pixels an inch: the page is width / dpi inches wide; PNG files say so too
    const char* title;   ///< title of the document, may be empty
};

struct ZenroQtBridge {
    int version;
    /// Makes a device on a white page; its pixels are those of the page, y down. Null after an error. The caller draws
    /// on it through SetViewDrawDC and gives it back to finish or drop.
    zm::Device* (*begin)(const ZenroQtPage* page, char* error, std::size_t errorSize);
    /// Writes the file whole and destroys the device. 1 if done, 0 after an error; the device is gone either way.
    int (*finish)(zm::Device* device, char* error, std::size_t errorSize);
    /// Destroys the device without a file.
    void (*drop)(zm::Device* device);
    /// "6.4.2"
    const char* (*qtVersion)();
    /// The installed face that is taken for Chinese text, empty where there is none.
    const char* (*chineseFace)();
};

/// \param version  kZenroQtBridgeVersion of the caller; null where the module has another one
typedef const ZenroQtBridge* (*ZenroQtBridgeFunction)(int version);

}  // extern "C"

/// The name of the function in the module.
constexpr char kZenroQtBridgeName[] = "zenro_qt_bridge";
