// What zenro says on stderr, and the status that follows from it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/kit/exit_codes.h"

namespace zm::tool {

/// One thing that was reported, for a process that reports through another.
struct ReportedEvent {
    enum Kind { note, count, warn, cut } kind = note;
    std::string group, line;
    long amount = 0;  // skipped records, for count and cut
};

/// Collects reports. Each is one line that begins with "error: ", "warning: " or "note: ". The same kind of report is
/// shown five times and then counted.
class Report {
 public:
    /// quiet keeps all but errors away; the exit status says the rest.
    void SetQuiet(bool quiet) { m_quiet = quiet; }
    bool quiet() const { return m_quiet; }

    /// A line for the reader that changes nothing in the status; the same line is shown once.
    void Note(const std::string& line);
    /// A record was left out or changed. kind groups like reports; line is what is shown.
    void Skip(const std::string& kind, const std::string& line) { Count(kind, line, 1); }
    /// A limit of the library cut something off.
    void Limit(const std::string& kind, const std::string& line) { Count(kind, line, 1); }
    /// What the library itself has reported, counted with the rest.
    void AddCut(long count);
    /// Something worth a warning that leaves the result whole.
    void Warn(const std::string& kind, const std::string& line);
    /// An error that ends the work; shown as it is.
    void Error(const std::string& line);

    /// From now on reports are gathered in a list in place of stderr; null: no more. Progress is kept away meanwhile.
    void Collect(std::vector<ReportedEvent>* events) { m_events = events; }
    bool collecting() const { return m_events != nullptr; }
    /// Reports what another process gathered, as if it had been reported here.
    void Replay(const std::vector<ReportedEvent>& events);

    /// Shows the counts of what was not shown in full. Call once, at the end.
    void Close();
    /// How many records were left out or cut, in all.
    long skipped() const { return m_skipped; }
    /// kDone, or kPartly where records were left out or cut.
    ExitCode status() const { return m_skipped > 0 ? kPartly : kDone; }
    /// The number of reports by kind, for --json.
    const std::map<std::string, long>& kinds() const { return m_kinds; }

 private:
    void Count(const std::string& kind, const std::string& line, long skipped);
    void Show(const std::string& kind, const std::string& line);

    std::vector<ReportedEvent>* m_events = nullptr;
    bool m_quiet = false;
    long m_skipped = 0;
    std::map<std::string, long> m_kinds;
    std::set<std::string> m_notes;
};

/// Writes one line to stderr, after a cleared progress line, without secrets and control characters. The text is UTF-8.
void SayLine(const std::string& line);

/// Writes one line for a reader to stdout, without control characters. The text is UTF-8.
void PrintText(const std::string& line);

/// Writes results, one or more whole lines, to stdout: to programs as they are, to a terminal without control characters.
void WriteLines(const std::string& lines);

/// The same for one line without its end.
void WriteLine(const std::string& line);

}  // namespace zm::tool
