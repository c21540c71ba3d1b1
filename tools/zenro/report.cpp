#include "tools/zenro/report.h"

#include <cstdio>

#include "tools/zenro/tool_host.h"

namespace zm::tool {
namespace {

constexpr long kShownOfAKind = 5;

}  // namespace

void SayLine(const std::string& line) {
    ClearProgressLine();
    std::fflush(stdout);
    std::fprintf(stderr, "zenro: %s\n", line.c_str());
}

void Report::Note(const std::string& line) {
    if (!m_quiet) SayLine(line);
}

void Report::Error(const std::string& line) {
    SayLine(line);
}

void Report::Warn(const std::string& kind, const std::string& line) {
    Show(kind, line);
}

void Report::Count(const std::string& kind, const std::string& line, long skipped) {
    m_skipped += skipped;
    Show(kind, line);
}

void Report::Show(const std::string& kind, const std::string& line) {
    if (++m_kinds[kind] <= kShownOfAKind) SayLine(line);
}

void Report::Close() {
    for (const auto& [kind, count] : m_kinds)
        if (count > kShownOfAKind) SayLine(kind + ": " + std::to_string(count - kShownOfAKind) + " more like these.");
}

}  // namespace zm::tool
