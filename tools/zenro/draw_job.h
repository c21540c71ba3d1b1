// One drawing: from inputs by rules to outputs. The verbs draw and demo do it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zenro/frame.h"
#include "tools/zenro/library_session.h"
#include "tools/zenro/sinks.h"
#include "tools/zenro/verbs.h"

namespace zm::tool {

struct DrawJob {
    SourceOptions source;
    LibraryOptions library;
    std::string rules;  // file; empty: rules for any data
    std::vector<std::string> outputs;
    double scale = 0.0;         // denominator; 0: by the data
    std::vector<double> sheet;  // x1, y1, x2, y2 in the plane; empty: by the data
    std::string clip;           // file with an area
    double rotation = 0.0;      // degrees
    bool frame = true;
    FrameTexts texts;
    SinkOptions sink;
};

/// What came of it.
struct DrawResult {
    long shapes = 0;  // drawn, in one output
    std::size_t labels = 0;
    long labelsWithoutRoom = 0;
    double scale = 0.0;
    Box sheet;
    std::string plane;
    std::vector<std::string> files;
};

/// Draws all outputs. Throws Failure and Stopped.
DrawResult RunDrawJob(const DrawJob& job, Context& context);

/// The file of a rules name: as given, or in the folder "rules" of the default data, with or without ".rules".
std::string FindRules(const std::string& name);

}  // namespace zm::tool
