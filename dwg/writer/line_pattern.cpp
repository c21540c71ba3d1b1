#include "dwg/writer/line_pattern.h"

#include <cmath>
#include <cstring>
#include <string_view>

#include "runtime/text/numbers.h"

namespace zm::dwg {
namespace {

constexpr int kLineSize = 160;            // with the end byte
constexpr std::size_t kLongestItem = 19;  // characters of a name or an element

// Reads a line of at most 159 characters; what a longer one has more is the next line. The line's end is cut, CR LF
// too.
bool ReadLine(std::FILE* file, char* buffer, std::string_view& line) {
    if (std::fgets(buffer, kLineSize, file) == nullptr) return false;
    line = std::string_view(buffer);
    if (!line.empty() && line.back() == '\n') {
        line.remove_suffix(1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    }
    return true;
}

PatternResult ReadElements(std::string_view list, LinePattern& pattern) {
    while (!list.empty()) {
        const std::size_t size = std::min(list.find(','), list.size());
        if (size > kLongestItem) return PatternResult::fault;
        char element[kLongestItem + 1] = {};
        list.copy(element, size);
        list.remove_prefix(std::min(size + 1, list.size()));
        if (pattern.count == kPatternSize) {
            pattern.cut = true;
            continue;
        }
        const double value = numbers::ReadReal(element);
        pattern.elements[pattern.count++] = std::isfinite(value) ? value : 0.0;
        pattern.length += std::fabs(pattern.elements[pattern.count - 1]);
    }
    return pattern.count != 0 ? PatternResult::found : PatternResult::missing;
}

}  // namespace

PatternResult ReadLinePattern(std::FILE* file, const char* wanted, LinePattern& pattern) {
    char buffer[kLineSize];
    std::string_view line;
    while (ReadLine(file, buffer, line)) {
        if (line.empty() || line.front() != '*') continue;
        const std::string_view name = line.substr(1, line.substr(1).find(','));
        if (name.size() > kLongestItem) return PatternResult::fault;
        // Required: the start of a name is enough, so that the order of the file decides.
        if (name.substr(0, std::strlen(wanted)) != wanted) continue;
        // The two characters "A," are skipped without a look at them.
        if (!ReadLine(file, buffer, line) || line.size() <= 2) return PatternResult::missing;
        return ReadElements(line.substr(2), pattern);
    }
    return PatternResult::missing;
}

}  // namespace zm::dwg
