// The host of a program without windows: messages on stderr, questions on the terminal.
#pragma once

#include <string>

#include "zenromath/host.h"

namespace zm::platform {

class ConsoleHost : public Host {
 public:
    /// Writes "title: text" to stderr in the terminal's encoding. A question is answered from the terminal if both
    /// stdin and stderr are one, else with No.
    int ShowBox(const char* text, const char* title, unsigned int type) override;
    /// Rings the bell if stderr is a terminal.
    void Beep() override;
};

/// GBK text in the encoding that the environment names for a terminal: GBK stays, all else is UTF-8.
std::string TerminalText(const char* gbk);

}  // namespace zm::platform
