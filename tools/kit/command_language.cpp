#include "tools/kit/command_language.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr const char* kLabels[] = {N_("Usage"),    N_("OPTIONS"), N_("SUBCOMMAND"), N_("Positionals"),
                                   N_("REQUIRED"), N_("Needs"),   N_("Excludes")};
constexpr const char* kTypes[] = {N_("TEXT"), N_("FLOAT"), N_("INT"), N_("UINT"), N_("NONNEGATIVE"), N_("POSITIVE")};
// Of the parser's own making, and shown by its help.
[[maybe_unused]] constexpr const char* kOthers[] = {N_("Options"), N_("Subcommands"),
                                                    N_("Print this help message and exit"),
                                                    N_("Display program version information and exit")};

bool IsCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

// The names of types in " TEXT:FLOAT in [0 - 1]=x ..."; what follows the "=" is a value.
std::string TypesTranslated(const std::string& text) {
    std::string shown;
    const std::size_t value = std::min(text.find('='), text.size());
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < value && IsCapital(text[end])) ++end;
        const std::string word = text.substr(at, std::max<std::size_t>(end - at, 1));
        const bool type = std::find(std::begin(kTypes), std::end(kTypes), word) != std::end(kTypes);
        shown += type ? Translated(word.c_str()) : word;
        at += word.size();
    }
    return shown;
}

// As the parser's own, with columns in place of bytes: text of two columns a character keeps the table straight.
class ReaderFormatter : public CLI::Formatter {
 public:
    ReaderFormatter() {
        for (const char* name : kLabels) label(name, Translated(name));
    }
    std::string make_option_opts(const CLI::Option* option) const override {
        return TypesTranslated(Formatter::make_option_opts(option));
    }
    std::string make_option(const CLI::Option* option, bool positional) const override {
        std::string line = "  " + make_option_name(option, positional) + make_option_opts(option);
        const std::string text = make_option_desc(option);
        const std::size_t width = get_column_width();
        if (text.empty()) return line + "\n";
        if (Columns(line) >= width) line += "\n" + std::string(width, ' ');
        return InColumns(line, width) + text + "\n";
    }
};

void TranslateOption(CLI::Option& option) {
    option.description(Phrase(option.get_description()));
    if (!option.get_default_str().empty()) option.default_str(Phrase(option.get_default_str()));
    if (!option.get_group().empty()) option.group(Phrase(option.get_group()));
}

void TranslateCommand(CLI::App& command, const std::shared_ptr<CLI::FormatterBase>& formatter) {
    command.formatter(formatter);
    command.description(Phrase(command.get_description()));
    command.footer(Phrase(command.get_footer()));
    command.group(Phrase(command.get_group()));
    for (CLI::Option* option : command.get_options()) TranslateOption(*option);
    for (CLI::App* below : command.get_subcommands({})) TranslateCommand(*below, formatter);
}

}  // namespace

void TranslateHelp(CLI::App& command) {
    if (HasTranslation()) TranslateCommand(command, std::make_shared<ReaderFormatter>());
}

std::string ParserMessage(const std::string& english) {
    return Rephrased(english, {N_("A subcommand"),
                               N_("A subcommand is required"),
                               N_("The following argument was not expected: {0}"),
                               N_("The following arguments were not expected: {0}"),
                               N_("Could not convert: {0} = {1}"),
                               N_("{0}: At least {1} required but received {2}"),
                               N_("{0}: At Most {1} required but received {2}"),
                               N_("{0}: {1} required {2} missing"),
                               N_("{0}: too many inputs for a flag"),
                               N_("{0}: Should be true/false or a number"),
                               N_("{0}: Value {1} not in range {2} to {3}"),
                               N_("{0}: \"{1}\" is no finite number"),
                               N_("{0}: \"{1}\" is no number of this size"),
                               N_("{0}: Number less than 0: ({1})"),
                               N_("{0}: Number less or equal to 0: ({1})"),
                               N_("{0}: {1} not in {2}"),
                               N_("{0} was given a disallowed flag override"),
                               N_("{0} requires {1}"),
                               N_("{0} excludes {1}"),
                               N_("{0} is required")});
}

}  // namespace zm::tool
