#include "tools/kit/command_line.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <optional>

#include "tools/kit/command_language.h"
#include "tools/kit/text.h"

namespace zm::tool {
namespace {

// Numbers of options are finite: "nan" and "inf" read as numbers and would go through every comparison.
CLI::Validator Finite() {
    return {[](std::string& text) {
                double number = 0.0;
                return ReadReal(text, number) ? std::string() : "\"" + text + "\" is no finite number";
            },
            "", "finite"};
}

// The parser takes the greatest number of 64 bits for a larger one, and a negative number for a large one where it needs
// one without sign. It reads hexadecimal numbers too.
CLI::Validator Fitting(bool isSigned) {
    return {[isSigned](std::string& text) {
                errno = 0;
                if (isSigned)
                    std::strtoll(text.c_str(), nullptr, 0);
                else
                    std::strtoull(text.c_str(), nullptr, 0);
                const bool fits = errno != ERANGE && (isSigned || text.find('-') == std::string::npos);
                return fits ? std::string() : "\"" + text.substr(0, 40) + "\" is no number of this size";
            },
            "", "fitting"};
}

bool IsOf(const CLI::Option& option, const char* type) {
    return option.get_type_name().find(type) != std::string::npos;
}

void RequireFiniteNumbers(CLI::App& app) {
    for (CLI::Option* option : app.get_options()) {
        if (IsOf(*option, "FLOAT")) option->check(Finite());
        if (IsOf(*option, "INT")) option->check(Fitting(!IsOf(*option, "UINT")));
    }
    for (CLI::App* verb : app.get_subcommands({})) RequireFiniteNumbers(*verb);
}

std::string Joined(const std::vector<std::string>& parts, char between) {
    std::string joined;
    for (const std::string& part : parts) joined += (joined.empty() ? "" : std::string(1, between)) + part;
    return joined;
}

}  // namespace

Option Option::Required() const {
    m_option->required();
    return *this;
}

Option Option::Excludes(Option other) const {
    m_option->excludes(other.m_option);
    return *this;
}

Option Option::Within(double least, double most) const {
    m_option->check(CLI::Range(least, most));
    return *this;
}

Option Option::Within(int least, int most) const {
    m_option->check(CLI::Range(least, most));
    return *this;
}

Option Option::Positive() const {
    m_option->check(CLI::PositiveNumber);
    return *this;
}

Option Option::NotNegative() const {
    m_option->check(CLI::NonNegativeNumber);
    return *this;
}

Option Option::OneOf(std::initializer_list<const char*> values) const {
    return OneOf(std::vector<std::string>(values.begin(), values.end()));
}

Option Option::OneOf(std::initializer_list<int> values) const {
    m_option->check(CLI::IsMember(std::vector<int>(values)));
    return *this;
}

Option Option::OneOf(const std::vector<std::string>& values) const {
    m_option->check(CLI::IsMember(values));
    return *this;
}

Option Option::Default(const std::string& text) const {
    m_option->default_str(text);
    return *this;
}

Option Option::ShowDefault() const {
    m_option->capture_default_str();
    return *this;
}

Option Option::Listed(int count) const {
    m_option->delimiter(',')->expected(count);
    return *this;
}

Option Option::Count(int count) const {
    m_option->expected(count);
    return *this;
}

Option Option::Repeatable() const {
    m_option->allow_extra_args(false)->take_all();
    return *this;
}

Option Option::Hidden() const {
    m_option->group("");
    return *this;
}

Verb Verb::AddVerb(const std::string& name, const std::string& help) const {
    return Verb(*m_app->add_subcommand(name, help));
}

void Verb::NeedsVerb() const {
    m_app->require_subcommand(1);
}

template <typename Target>
Option Verb::AddOption(const std::string& names, Target& target, const std::string& help) const {
    return Option(m_app->add_option(names, target, help));
}

template Option Verb::AddOption(const std::string&, int&, const std::string&) const;
template Option Verb::AddOption(const std::string&, long&, const std::string&) const;
template Option Verb::AddOption(const std::string&, long long&, const std::string&) const;
template Option Verb::AddOption(const std::string&, std::size_t&, const std::string&) const;
template Option Verb::AddOption(const std::string&, std::optional<double>&, const std::string&) const;
template Option Verb::AddOption(const std::string&, double&, const std::string&) const;
template Option Verb::AddOption(const std::string&, std::string&, const std::string&) const;
template Option Verb::AddOption(const std::string&, std::vector<double>&, const std::string&) const;
template Option Verb::AddOption(const std::string&, std::vector<std::string>&, const std::string&) const;

Option Verb::AddNumberedChoice(const std::string& names, std::function<void(int)> take,
                               const std::vector<std::pair<std::string, int>>& values, const std::string& help) const {
    std::string description;
    for (const auto& [name, value] : values) description += (description.empty() ? "" : "|") + name;
    CLI::Option* option = m_app->add_option_function<int>(names, take, help);
    option->transform(
        CLI::CheckedTransformer(std::map<std::string, int>(values.begin(), values.end()), CLI::ignore_case)
            .description(description));
    option->type_name("ENUM");
    return Option(option);
}

Option Verb::AddFlag(const std::string& names, bool& target, const std::string& help) const {
    return Option(m_app->add_flag(names, target, help));
}

Option Verb::AddFlag(const std::string& names, std::function<void()> given, const std::string& help) const {
    return Option(m_app->add_flag_function(
        names, [given = std::move(given)](std::int64_t) { given(); }, help));
}

void Verb::OnRun(std::function<void()> run) const {
    m_app->callback(std::move(run));
}

void Verb::TakeAnything() const {
    m_app->prefix_command();
}

bool Verb::Has(const std::string& name) const {
    return m_app->count(name) > 0;
}

std::vector<std::string> Verb::GivenOptions(std::initializer_list<const char*> without) const {
    std::vector<std::string> given;
    for (const CLI::Option* option : m_app->get_options()) {
        const std::string& name = option->get_single_name();
        if (option->count() == 0 || option->get_positional() ||
            std::find(without.begin(), without.end(), name) != without.end())
            continue;
        const std::string text = "--" + name;
        if (option->get_expected_max() == 0)
            given.push_back(text);
        else if (option->get_delimiter() != '\0')  // numbers with commas between, as --sheet has them
            given.push_back(text + "=" + Joined(option->results(), option->get_delimiter()));
        else
            for (const std::string& one : option->results()) given.push_back(std::string(text).append("=").append(one));
    }
    return given;
}

CommandLine::CommandLine(const std::string& description, const std::string& name)
    : m_app(std::make_unique<CLI::App>(description, name)) {}

CommandLine::~CommandLine() = default;

Verb CommandLine::root() {
    return Verb(*m_app);
}

void CommandLine::SetVersion(const std::string& text) {
    m_app->set_version_flag("--version", text);
}

void CommandLine::SetFooter(const std::string& text) {
    m_app->footer(text);
}

ParseResult CommandLine::Parse(const std::vector<std::string>& arguments) {
    RequireFiniteNumbers(*m_app);
    using Kind = ParseResult::Kind;
    try {
        m_app->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));  // it takes them from the last on
        return {Kind::run, {}};
    } catch (const CLI::CallForHelp&) {
        TranslateHelp(*m_app);
        return {Kind::answered, m_app->help()};
    } catch (const CLI::CallForAllHelp&) {
        TranslateHelp(*m_app);
        return {Kind::answered, m_app->help("", CLI::AppFormatMode::All)};
    } catch (const CLI::CallForVersion& call) {
        return {Kind::answered, std::string(call.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        return {Kind::wrong, ParserMessage(error.what())};
    }
}

}  // namespace zm::tool
