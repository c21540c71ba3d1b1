// What zenro says on stderr, and the status that follows from it.
#pragma once

#include <map>
#include <string>

#include "tools/zenro/exit_codes.h"

namespace zm::tool {

/// Collects reports. The same kind of report is shown five times and then counted.
class Report {
 public:
    /// quiet keeps notes and progress away; errors and skipped records are always told.
    void SetQuiet(bool quiet) { m_quiet = quiet; }
    bool quiet() const { return m_quiet; }

    /// A line for the reader that changes nothing in the status.
    void Note(const std::string& line);
    /// A record was left out or changed. kind groups like reports; line is what is shown.
    void Skip(const std::string& kind, const std::string& line) { Count(kind, line, 1); }
    /// A limit of the library cut something off.
    void Limit(const std::string& kind, const std::string& line) { Count(kind, line, 1); }
    /// What the library itself has told, counted with the rest.
    void AddCut(long count) { m_skipped += count; }
    /// Something worth a warning that leaves the result whole.
    void Warn(const std::string& kind, const std::string& line);
    /// An error that ends the work; shown as it is.
    void Error(const std::string& line);

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

    bool m_quiet = false;
    long m_skipped = 0;
    std::map<std::string, long> m_kinds;
};

/// Writes one line to stderr, behind a cleared progress line. The text is UTF-8.
void SayLine(const std::string& line);

}  // namespace zm::tool
