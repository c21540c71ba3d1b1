// Runs the small programs of independent libraries for the cross-checks.
#pragma once

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "runtime/text/numbers.h"
#include "tests/support/scratch.h"

namespace zm::test {

inline bool HasProgram(const std::string& name) {
    return std::system(("command -v " + name + " > /dev/null 2>&1").c_str()) == 0;
}

/// Leaves the test, loudly, where a program is missing.
#define ZM_NEED_PROGRAM(name, package)                  \
    if (!zm::test::HasProgram(name))                    \
    GTEST_SKIP() << "NOT CHECKED: the program " << name \
                 << " is missing. Install the Debian package " package " to run this cross-check."

using Row = std::vector<double>;

/// Feeds rows of numbers to a command and reads rows of numbers; an empty result where the command fails.
inline std::vector<Row> RunProgram(const std::string& command, const std::vector<Row>& rows) {
    const ScratchDir scratch;
    std::string input;
    for (const Row& row : rows) {
        for (const double value : row) input += numbers::Text("%.17g ", value);
        input += '\n';
    }
    WriteFile(scratch / "in", input);
    const std::string line =
        command + " < \"" + (scratch / "in").string() + "\" > \"" + (scratch / "out").string() + "\" 2> /dev/null";
    if (std::system(line.c_str()) != 0) return {};
    std::vector<Row> result;
    std::istringstream text(ReadFile(scratch / "out"));
    std::string words;
    while (std::getline(text, words)) {
        Row row;
        const char* at = words.c_str();
        const char* end = at;
        for (double value = numbers::ReadReal(at, &end); end != at; value = numbers::ReadReal(at, &end)) {
            row.push_back(value);
            at = end;
        }
        result.push_back(row);
    }
    return result;
}

}  // namespace zm::test
