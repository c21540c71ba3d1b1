// The command line as the verbs see it: each adds its options and says what runs. The parser itself is known to
// command_line.cpp alone, since its headers cost every file that includes them ten seconds.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace zm::tool {

/// An option of a verb. A copy is the same option; each call returns the option itself.
class Option {
 public:
    explicit Option(CLI::Option* option) : m_option(option) {}

    Option Required() const;
    Option Excludes(Option other) const;

    /// The value is a number from least to most, both included.
    Option Within(double least, double most) const;
    Option Within(int least, int most) const;
    Option Positive() const;
    Option NotNegative() const;

    /// The value is one of these.
    Option OneOf(std::initializer_list<const char*> values) const;
    Option OneOf(std::initializer_list<int> values) const;
    Option OneOf(const std::vector<std::string>& values) const;

    /// What help gives as the default: this text, or the value that the target has now.
    Option Default(const std::string& text) const;
    Option ShowDefault() const;

    /// So many values, separated by commas in one argument.
    Option Listed(int count) const;
    /// So many values, an argument each.
    Option Count(int count) const;
    /// May be given several times, one value each.
    Option Repeatable() const;

    /// Not in help.
    Option Hidden() const;

 private:
    CLI::Option* m_option;  // its App's
};

/// A verb with its options and further verbs. A copy is the same verb.
class Verb {
 public:
    explicit Verb(CLI::App& app) : m_app(&app) {}

    Verb AddVerb(const std::string& name, const std::string& help) const;
    /// One of the added verbs has to be named.
    void NeedsVerb() const;

    /// An option that writes its value to `target`, which lives as long as the command line. Defined for int, long,
    /// long long, std::size_t, double, std::optional<double>, std::string, and vectors of double and std::string. Numbers
    /// are finite: "nan" and "inf" are refused.
    /// @param names "--name", "-n,--name", or "NAME" for an argument without a name
    template <typename Target>
    Option AddOption(const std::string& names, Target& target, const std::string& help) const;

    /// An option that takes one of the named values.
    template <typename Value>
    Option AddChoice(const std::string& names, Value& target, const std::vector<std::pair<std::string, Value>>& values,
                     const std::string& help) const {
        std::vector<std::pair<std::string, int>> numbers;
        numbers.reserve(values.size());
        for (const auto& [name, value] : values) numbers.emplace_back(name, static_cast<int>(value));
        return AddNumberedChoice(
            names, [&target](int number) { target = static_cast<Value>(number); }, numbers, help);
    }

    /// "!--no-name" sets the target false where it is given, any other true.
    Option AddFlag(const std::string& names, bool& target, const std::string& help) const;
    Option AddFlag(const std::string& names, std::function<void()> given, const std::string& help) const;

    /// What the verb does; it runs when the whole command line has been read.
    void OnRun(std::function<void()> run) const;

    /// Whatever follows the verb is accepted.
    void TakeAnything() const;

    /// Whether the option was given.
    bool Has(const std::string& name) const;

    /// The options that were given, as arguments, without those named (by their names alone) and without arguments that
    /// have no name.
    std::vector<std::string> GivenOptions(std::initializer_list<const char*> without) const;

 private:
    Option AddNumberedChoice(const std::string& names, std::function<void(int)> take,
                             const std::vector<std::pair<std::string, int>>& values, const std::string& help) const;

    CLI::App* m_app;
};

/// What came of reading a command line.
struct ParseResult {
    enum class Kind {
        run,
        answered,
        wrong
    } kind;  // a verb ran; the text is the answer (help, version); it is the error
    std::string text;
};

/// A whole command line: the verbs hang below its root.
class CommandLine {
 public:
    CommandLine(const std::string& description, const std::string& name);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    Verb root();
    void SetVersion(const std::string& text);
    void SetFooter(const std::string& text);

    /// Reads the arguments, without the program's name, and runs the verb; what the verb throws goes through. Help and
    /// errors are in the reader's language.
    ParseResult Parse(const std::vector<std::string>& arguments);

 private:
    std::unique_ptr<CLI::App> m_app;
};

}  // namespace zm::tool
