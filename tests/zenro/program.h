// Runs the program zenro as a script does: arguments in, status, stdout and stderr out.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/scratch.h"

namespace zm::test {

struct Outcome {
    int status = -1;  // exit status; 128 + n for a signal
    std::string out, err;
};

/// Runs zenro in a directory with its settings folder there too, so that no user's settings reach a test.
class Program {
 public:
    Program() = default;
    const std::filesystem::path& folder() const { return m_scratch.path(); }
    std::filesystem::path operator/(std::string_view name) const { return m_scratch / name; }

    Outcome Run(const std::vector<std::string>& arguments, const std::string& input = {},
                const std::vector<std::string>& environment = {}) const;
    /// Starts it, sends a signal once a file has come into being beside the outputs, and waits for the end.
    Outcome Interrupt(const std::vector<std::string>& arguments, int signal) const;
    /// Starts it and stops it (SIGSTOP) at a moment when `when` holds, lets act(its process id) continue or kill it and
    /// waits for the end. Between a look and the signal a run may be done: then what it made is removed and it is run
    /// again, up to twenty times.
    Outcome RunStopped(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                       const std::function<bool()>& when, const std::function<void(int)>& act) const;
    /// Kills it after some time, if it has not ended before, and waits for the end of the processes that it started, too.
    Outcome RunKilledAfter(const std::vector<std::string>& arguments, int microseconds) const;
    /// Starts it, lets act(its process id) work while it runs, and waits for the end.
    Outcome RunBeside(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                      const std::function<void(int)>& act) const;

    /// Writes a file into the folder and gives its path.
    std::string File(std::string_view name, std::string_view bytes) const;
    /// The names in the folder that are left from an unfinished output.
    std::vector<std::string> Unfinished() const;
    bool Has(std::string_view name) const { return std::filesystem::exists(m_scratch / name); }

 private:
    ScratchDir m_scratch;
};

/// GeoJSON of plane coordinates without a system of their own kind: China 2000, zone 40.
std::string Collection(const std::string& features);
std::string PointFeature(double x, double y, const std::string& properties);
std::string LineFeature(const std::string& coordinates, const std::string& properties);
std::string AreaFeature(const std::string& rings, const std::string& properties);

/// How often a text stands in another.
int Count(const std::string& text, const std::string& what);

}  // namespace zm::test
