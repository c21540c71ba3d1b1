// What differs from system to system in a program of the command line: its arguments, its terminal, its files.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace zm::tool {

/// The arguments of the program in UTF-8, its name first.
std::vector<std::string> Arguments(int argc, char** argv);

/// fopen for a path of any length and with any characters.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

bool IsTerminal(std::FILE* stream);

/// While it lives the terminal shows what is written as UTF-8; afterwards it is as it was.
class TerminalText {
 public:
    TerminalText();
    ~TerminalText();  // NOLINT(performance-trivially-destructible): it does something on Windows
    TerminalText(const TerminalText&) = delete;
    TerminalText& operator=(const TerminalText&) = delete;
    /// The same as its end, for a process that leaves at once.
    static void Restore();

 private:
    static unsigned int s_previous;
};

/// The name of an installed face that covers Chinese, empty where there is none.
std::string InstalledChineseFace();

}  // namespace zm::tool
