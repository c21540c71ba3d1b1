// Any text as a recording, line by line: head, comments that tell more, commands.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "tools/zenro/map/recording.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::tool;
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    RecordingHead head;
    Exactly exactly;
    for (std::string line; std::getline(lines, line);) {
        ReadHeadLine(line, head);
        if (ReadExactly(line, exactly) && exactly.area) {
            if (exactly.area->xy.size() % 2 != 0) std::abort();  // a ring has whole points
            exactly.area.reset();
        }
        const auto command = ParseCommand(line);
        if (!command) continue;
        // A face is cut to its room and ends; numbers are finite, of any sign: devices take what programs give them.
        if (const auto* font = std::get_if<command::Font>(&*command);
            font != nullptr && font->font.lfFaceName[LF_FACESIZE - 1] != '\0')
            std::abort();
        if (const auto* stroke = std::get_if<command::Line>(&*command);
            stroke != nullptr && !(std::isfinite(stroke->x1) && std::isfinite(stroke->y1) &&
                                   std::isfinite(stroke->x2) && std::isfinite(stroke->y2)))
            std::abort();
    }
    return 0;
}
