// The exit statuses of zenro. Scripts test them; their values never change.
#pragma once

#include <stdexcept>
#include <string>

namespace zm::tool {

enum ExitCode {
    kDone = 0,
    kFailed = 1,     // nothing useful came of it
    kUsage = 2,      // the command line is wrong
    kNoInput = 3,    // an input is missing or cannot be read
    kPartly = 4,     // done, but records were skipped or a limit cut something
    kNoOutput = 5,   // an output could not be written
    kEmpty = 6,      // nothing to draw: a sheet without data, a drawing without entities; no file was written
    kStopped = 130,  // stopped by Ctrl-C
};

/// Ends the work with a status. The text is one line: what, where, why, what to do.
struct Failure : std::runtime_error {
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), status(code) {}
    ExitCode status;
};

/// Ctrl-C was pressed. Not an error: nothing is said but that the work was stopped.
struct Stopped {};

}  // namespace zm::tool
