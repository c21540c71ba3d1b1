// One drawing: from inputs by rules to outputs. The verbs draw and demo do it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zenro/map/frame.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/map/sheet_number.h"
#include "tools/zenro/map/sinks.h"
#include "tools/zenro/map/source.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

struct DrawJob {
    SourceOptions source;
    LibraryOptions library;
    std::string rules;  // file; empty: rules for any data
    std::vector<std::string> outputs;
    double scale = 0.0;            // denominator; 0: by the data
    std::vector<double> sheet;     // x1, y1, x2, y2 in the plane; empty: by the data
    std::string division;          // of corner numbers: 50x50, 40x50, 40x40; empty: by the scale
    bool numberNamesSheet = true;  // texts.number is read as the number of a standard sheet, where no sheet is given
    std::string clip;              // file with an area
    double rotation = 0.0;         // degrees
    bool frame = true;
    std::string margins;  // file with what is around the map; empty: the texts alone
    FrameTexts texts;
    bool legend = false;  // of what the sheet uses, beside or below the frame
    std::string explain;  // number of a feature whose rules are printed; empty: none
    SinkOptions sink;
    std::vector<std::string> hiddenLayers;  // by the names of reports; not drawn
    std::vector<std::string> hiddenRules;   // by their places in the rules, from 0
    bool drawEmpty = false;                 // a sheet that meets no data is drawn with its frame, else Failure (kEmpty)
    int jobs = 0;                           // processes that draw outputs side by side; 0: one for each processor
    std::string knownInput;                 // nothing is drawn where result.input is this; needs digests
    bool digests = false;                   // result.input and the hashes of the files are wanted
};

/// A file that was drawn.
struct DrawnFile {
    std::string path;
    std::string sha256;  // where digests are wanted
};

/// What came of it.
struct DrawResult {
    long shapes = 0;  // drawn, in one output
    std::size_t labels = 0;
    long labelsWithoutRoom = 0;
    double scale = 0.0;
    Box sheet;
    std::string plane;
    std::string number;      // of the sheet, empty where it has none
    bool unchanged = false;  // the input was the known one; no file was written
    bool empty = false;      // the sheet meets no data
    long long features = 0;  // that the sheet needs
    long long taken = 0;     // from the inputs, for it
    std::string input;       // hash of all that the drawing follows from; where digests are wanted
    std::vector<DrawnFile> files;
};

/// Draws all outputs. Throws Failure and Stopped.
/// The hash result.input is of the features that the sheet needs, rules, symbols, notes, project, blocks, page, options
/// and the program's version: where it is the same, so are the files.
DrawResult RunDrawJob(const DrawJob& job, Context& context);

/// The rules of a drawing: those of its file, else rules for any data. Throws Failure.
Rules RulesOf(const DrawJob& job, Report& report);

/// Takes what number and sheet of a drawing say of its plane. \return the sheet that the number names
std::optional<NamedSheet> TakeSheet(DrawJob& job);

/// The file of a rules name: as given, or in the folder "rules" of the default data, with or without ".rules".
std::string FindRules(const std::string& name);

}  // namespace zm::tool
