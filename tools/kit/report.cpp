#include "tools/kit/report.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "tools/kit/process.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr long kShownOfAKind = 5;

// Kinds are English wherever they are a key; a reader gets his own words.
std::string Kind(const std::string& english) {
    return Rephrased(english, {N_("message of the {0}: {1}"), N_("refused sheets: {0}")});
}

}  // namespace

void SayLine(const std::string& line) {
    ClearProgressLine();
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", ForTerminal(Printable(WithoutSecrets(line))).c_str());
    std::fflush(stderr);
}

void PrintText(const std::string& line) {
    std::printf("%s\n", ForTerminal(Printable(line)).c_str());
}

void WriteLines(const std::string& lines) {
    static const bool terminal = IsTerminal(stdout);
    if (!terminal) {
        std::fputs(lines.c_str(), stdout);
        return;
    }
    for (std::size_t at = 0, end = 0; at < lines.size(); at = end + 1) {
        end = std::min(lines.find('\n', at), lines.size());
        std::fputs(Printable(std::string_view(lines).substr(at, end - at)).c_str(), stdout);
        if (end < lines.size()) std::fputc('\n', stdout);
    }
}

void WriteLine(const std::string& line) {
    WriteLines(line + "\n");
}

void Report::Note(const std::string& line) {
    if (m_events != nullptr) m_events->push_back({ReportedEvent::note, {}, line, 0});
    if (!m_quiet && m_events == nullptr && m_notes.insert(line).second) SayLine(Phrase("note: {0}", line));
}

void Report::AddCut(long count) {
    m_skipped += count;
    if (m_events != nullptr && count != 0) m_events->push_back({ReportedEvent::cut, {}, {}, count});
}

void Report::Replay(const std::vector<ReportedEvent>& events) {
    for (const ReportedEvent& e : events) switch (e.kind) {
            case ReportedEvent::note:
                Note(e.line);
                break;
            case ReportedEvent::count:
                Count(e.group, e.line, e.amount);
                break;
            case ReportedEvent::warn:
                Warn(e.group, e.line);
                break;
            case ReportedEvent::cut:
                AddCut(e.amount);
                break;
        }
}

void Report::Error(const std::string& line) {
    SayLine(Phrase("error: {0}", line));
}

void Report::Warn(const std::string& kind, const std::string& line) {
    if (m_events != nullptr) m_events->push_back({ReportedEvent::warn, kind, line, 0});
    Show(kind, line);
}

void Report::Count(const std::string& kind, const std::string& line, long skipped) {
    if (m_events != nullptr) m_events->push_back({ReportedEvent::count, kind, line, skipped});
    m_skipped += skipped;
    Show(kind, line);
}

void Report::Show(const std::string& kind, const std::string& line) {
    if (++m_kinds[kind] <= kShownOfAKind && !m_quiet && m_events == nullptr) SayLine(Phrase("warning: {0}", line));
}

void Report::Close() {
    if (m_quiet) return;
    for (const auto& [kind, count] : m_kinds)
        if (count > kShownOfAKind)
            SayLine(Phrase("warning: {0}: {1} more like these.", Kind(kind), count - kShownOfAKind));
}

}  // namespace zm::tool
