// The command line in the reader's language: descriptions, headings and what the parser says of a wrong one.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace zm::tool {

/// Translates the help of a command and of all below it. Called once, after all options were added; without a
/// translation nothing changes.
void TranslateHelp(CLI::App& command);

/// What the parser said of a wrong command line, in the reader's language.
std::string ParserMessage(const std::string& english);

}  // namespace zm::tool
