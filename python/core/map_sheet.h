// One drawing of a map to a file, by the hands that draw for zenro: the same figure comes of it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "python/core/map_data.h"
#include "tools/kit/report.h"
#include "tools/zenro/map/frame.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/map/sinks.h"

namespace zm::python {

struct SheetOptions {
    double scale = 0.0;          // denominator; 0: by the size of the data
    std::vector<double> bounds;  // x1, y1, x2, y2; empty: by the data
    bool frame = false;
    tool::FrameTexts texts;
    tool::LibraryOptions library;
    tool::SinkOptions sink;
};

/// The page that a map is drawn on. Throws Failure (kUsage) where there is none.
tool::Page PageOf(const MapData& data, const SheetOptions& options);

/// Draws to a file. breathe is called once for each feature; what it throws ends the drawing, and no file is left.
/// Throws Failure, and LibraryStop with the library's last message in stopped.
/// \return  labels that found no room
long DrawSheet(MapData& data, const SheetOptions& options, const std::string& path, tool::Report& report,
               const std::function<void()>& breathe, std::string& stopped);

}  // namespace zm::python
