// The seam between zenro and Qt. PNG and PDF are drawn by the Qt device, which is in a module of its own, so that
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

#include "zenromath/platform.h"

namespace zm {
class Host;
}

constexpr int kZenroQtBridgeVersion = 4;

extern "C" {

/// One page to draw on.
struct ZenroQtPage {
    const char* path;    ///< file to write
    const char* format;  ///< "png" or "pdf"
    int width, height;   ///< device units
    double dpi;          ///< device units an inch: the page is width / dpi inches wide
    double imageDpi;     ///< pixels an inch of an image, whose painter is scaled from units to pixels; PNG files say so
    const char* title;   ///< title of the document, may be empty
    /// Receives, until the page ends, the face of each text that is drawn in another one, which is used; used is empty
    /// where no face has all characters of the text, so that some are boxes. May come again for the same face.
    void (*otherFace)(void* reader, const char* face, const char* used);
    void* reader;
};

/// Pixels of the caller's to draw on, 0xffRRGGBB each.
struct ZenroQtPicture {
    void* pixels;
    int width, height;  ///< pixels
    double dpi;         ///< device units an inch of paper
    double imageDpi;    ///< pixels an inch of paper
};

/// A map that is to be shown in a window. Lists end with a null.
struct ZenroQtMap {
    const char* program;         ///< that draws and answers: PROGRAM view --worker FD INPUTS OPTIONS
    const char* const* inputs;   ///< map data
    const char* const* options;  ///< as the command line has them, without inputs
    const char* picture;         ///< a file that takes what the window shows, which then ends; may be empty
    const char* log;             ///< a file that takes a line for each thing that happens; may be empty
    int (*stop)();               ///< asked ten times a second; non-zero ends the window
};

struct ZenroQtBridge {
    int version;
    /// Makes a device on a white page; its units are those of the page, y down. Null after an error. The caller draws
    /// on it through SetViewDrawDC and gives it back to finish or drop.
    HDC (*begin)(const ZenroQtPage* page, char* error, std::size_t errorSize);
    /// Writes the file whole and destroys the device. 1 if done, 0 after an error; the device is gone either way.
    int (*finish)(HDC device, char* error, std::size_t errorSize);
    /// Destroys the device without a file.
    void (*drop)(HDC device);
    /// "6.4.2"
    const char* (*qtVersion)();
    /// The installed face that is taken for Chinese text, empty where there is none.
    const char* (*chineseFace)();
    /// The host of a program with windows, which lives as long as the process; null, with the reason, where there is no
    /// display. While one of its dialogs is open, stop is asked ten times a second; non-zero takes the window away
    /// without a result.
    zm::Host* (*windowHost)(int (*stop)(), char* error, std::size_t errorSize);
    /// Makes a device on white pixels, which must outlast it; null after an error. It is given back to drop, which
    /// brings the last strokes into the pixels.
    HDC (*beginPicture)(const ZenroQtPicture* picture, char* error, std::size_t errorSize);
    /// Shows a map in a window until that is closed. \return the exit status of the program, with the reason in error
    /// where it is not 0
    int (*showMap)(const ZenroQtMap* map, char* error, std::size_t errorSize);
    /// The same for a symbol library, the one input: PROGRAM symbols view --worker FD OPTIONS works for it.
    int (*showSymbols)(const ZenroQtMap* library, char* error, std::size_t errorSize);
};

/// \param version  kZenroQtBridgeVersion of the caller; null where the module has another one
typedef const ZenroQtBridge* (*ZenroQtBridgeFunction)(int version);

}  // extern "C"

/// The name of the function in the module.
constexpr char kZenroQtBridgeName[] = "zenro_qt_bridge";
