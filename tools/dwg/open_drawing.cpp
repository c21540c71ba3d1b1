#include "tools/dwg/open_drawing.h"

#include <algorithm>

#include "dwg/reader/check.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/dxf_file.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

namespace reader = dwg::reader;

reader::Drawing OpenKnown(const std::string& file, Context& context) {
    reader::Drawing drawing = ReadDrawingFile(InputFile(PathOf(file)).path());
    if (!drawing.Known()) {
        const auto& bytes = drawing.bytes();
        const std::string stamp(bytes.begin(),
                                bytes.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(bytes.size(), 6)));
        const bool isStamp = stamp.size() == 6 && stamp.compare(0, 2, "AC") == 0 &&
                             stamp.find_first_not_of("0123456789.", 2) == std::string::npos;
        throw Failure(kNoInput,
                      Phrase(isStamp ? N_("{0}: is a drawing of version {1}; versions AC1006 and AC1009 are read. Save "
                                          "it as one of them.")
                                     : N_("{0}: is no drawing; a drawing begins with AC1006 or AC1009."),
                             file, stamp));
    }
    const reader::Report report = reader::Check(drawing);
    if (!report.problems.empty()) {
        const std::size_t problems = report.problems.size() + report.unlisted;
        context.report.Skip(
            N_("damaged drawings"),
            Phrase(problems > 1 ? N_("{0}: is damaged at offset {1}: {2}; and {3} problems more. What can be read is "
                                     "shown; zenro dwg check lists all.")
                                : N_("{0}: is damaged at offset {1}: {2}. What can be read is shown; zenro dwg check "
                                     "lists all."),
                   file, report.problems.front().offset, report.problems.front().text, problems - 1));
    }
    context.status = context.report.status();
    return drawing;
}

}  // namespace zm::tool
