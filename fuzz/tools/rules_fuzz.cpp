// Any text as a rules file: taken, or refused with the line that is wrong; what is taken keeps its ranges.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tools/kit/exit_codes.h"
#include "tools/zenro/map/rules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::tool;
    try {
        const Rules rules = ParseRules({reinterpret_cast<const char*>(data), size}, "any.rules");
        for (const Rule& rule : rules.rules) {
            const bool good = rule.symbol >= 0 && rule.symbol <= 999 && rule.layer >= 0 && rule.layer <= 999 &&
                              rule.outline >= 0 && rule.outline <= 999 && rule.lineType >= 1 && rule.lineType <= 5 &&
                              rule.level >= 0 && rule.level <= 9 && rule.roadWidth >= 0.0 && rule.line > 0;
            if (!good) std::abort();
            FitsGlob(rule.layerGlob, rule.condition);
        }
    } catch (const Failure& failure) {
        if (std::string(failure.what()).find("any.rules:") == std::string::npos) std::abort();
    }
    return 0;
}
