// What happened to sheets: lines of JSON that each drawing process writes into a log of its own, and their merging.
//
// A line's run says which is newer, never a clock: clocks differ between nodes. In one run a sheet may be drawn twice (a
// node that was given up and came back); the better end counts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tools/zenro/series/plan.h"

namespace zm::tool {

struct SheetRecord {
    std::string number;
    long long run = 0;
    SheetState state = SheetState::failed;
    int status = 0;          // the exit status that the drawing alone would have had
    bool unchanged = false;  // the input's hash was the old one; nothing was drawn
    bool held = false;       // not the sheet's fault (no source): it stays due
    std::string reason;
    double seconds = 0.0;
    long long features = 0, warnings = 0;
    std::string input, source, files, node;
};

struct SheetFile {
    std::string path;
    std::uintmax_t bytes = 0;
};
/// The files of a sheet from the text in which plans and logs keep them; none where the text is no list of files.
std::vector<SheetFile> FilesIn(const std::string& text);

std::string ToLine(const SheetRecord& record);
/// False for what is no whole line of a log: a process may have been killed in the middle of one.
bool FromLine(const std::string& line, SheetRecord& record);

/// The records that count, by number, from all logs in a folder. Lines that are none are counted in broken.
std::map<std::string, SheetRecord> ReadLogs(const std::filesystem::path& folder, long long& broken);
/// Takes what counts over into the plan. Returns how many sheets changed.
long long Merge(const std::map<std::string, SheetRecord>& records, Plan& plan);

/// A log of this process: one whole line at a time reaches the disk.
class Log {
 public:
    /// Throws Failure (kNoOutput).
    explicit Log(const std::filesystem::path& folder);
    ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    void Write(const SheetRecord& record);

 private:
    std::string m_path;
    int m_file = -1;
};

/// The name of this machine, and this process: "node7 4711".
std::string ThisNode();

}  // namespace zm::tool
