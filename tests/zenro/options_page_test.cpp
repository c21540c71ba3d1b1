// docs/zenro/options.md against --help: each verb has its section there, and each option its line in it.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

std::string PartBehind(const std::string& text, const std::string& mark) {
    const std::size_t at = text.find(mark);
    return at != std::string::npos ? text.substr(at + mark.size()) : std::string();
}

std::set<std::string> FirstWords(const std::string& text, const char* pattern) {
    std::set<std::string> words;
    const std::regex line(pattern);
    std::istringstream in(text);
    for (std::string row; std::getline(in, row);)
        for (std::sregex_iterator i(row.begin(), row.end(), line), end; i != end; ++i) words.insert((*i)[1]);
    return words;
}

// The long names of the options of a help text, "--flag{false}" without its braces.
std::set<std::string> Options(const std::string& help) {
    return FirstWords(help, R"(^ +(?:-[A-Za-z],)?(--[a-z0-9-]+))");
}

void Compare(const Program& zenro, const std::string& page, std::vector<std::string> verb, int& verbs) {
    std::vector<std::string> arguments = verb;
    arguments.emplace_back("--help");
    const std::string help = zenro.Run(arguments).out;
    const auto inner = FirstWords(PartBehind(help, "\nSubcommands:\n"), "^  ([a-z0-9-]+) ");
    for (const std::string& name : inner) {
        std::vector<std::string> below = verb;
        below.push_back(name);
        Compare(zenro, page, below, verbs);
    }
    if (!inner.empty()) return;
    ++verbs;
    std::string title = "\n##";
    for (const std::string& word : verb) title += " " + word;
    std::string section = PartBehind(page, title + "\n");
    EXPECT_FALSE(section.empty()) << title;
    section = section.substr(0, section.find("\n## "));
    EXPECT_EQ(Options(section), Options(help)) << title << ": run scripts/write-options";
}

}  // namespace

TEST(OptionsPage, NamesEachVerbAndEachOptionThatHelpPrints) {
    const Program zenro;
    int verbs = 0;
    Compare(zenro, ReadFile(std::string(ZENRO_SOURCE_DIR) + "/docs/zenro/options.md"), {}, verbs);
    EXPECT_GE(verbs, 25);
}
