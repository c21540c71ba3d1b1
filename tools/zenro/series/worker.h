// Draws sheets of a run: each in a process of its own, so that one that fails does not stop the others.
#pragma once

#include <filesystem>

#include "tools/zenro/series/run.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

/// Draws a range of a run's sheets, jobs at once, and writes what happened into a log of its own. Sheets that a log of
/// this run has drawn already are passed over. Gives up where the source or the disk fails for several sheets in a row:
/// those stay due.
/// \return kDone where each sheet has its line, else the status of what stopped the work
int DrawSheets(const SeriesRun& run, std::size_t first, std::size_t last, int jobs, const std::filesystem::path& logs,
               Context& context);

/// The files of a sheet by the patterns of the series: {number}, {name}, {scale}, {run}. Characters that a file name
/// cannot have everywhere become "_".
std::vector<std::string> FilesOf(const std::map<std::string, std::string>& settings, const PlanSheet& sheet);

/// The arguments of "draw" for a sheet.
std::vector<std::string> ArgumentsOf(const std::map<std::string, std::string>& settings, const PlanSheet& sheet);

/// What the input files of a series are by size and time of change; other sources are not looked at.
std::string StampOfSource(const std::map<std::string, std::string>& settings);

}  // namespace zm::tool
