// Lint of line-class symbols, in pattern mode and in vertex mode.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

#include "symbol/line/pattern_limits.h"
#include "tools/kit/translation.h"
#include "tools/symbols/lint.h"

namespace zm::tool::symbols {

namespace {

using zm::symbol::kLeastCycle;
using zm::symbol::kLeastWidth;
using zm::symbol::kMarksInARow;
using zm::symbol::kVertexMode;

constexpr double kLargestScale = 500.0;  // the scale at which widths are smallest on the ground

class PatternLint {
 public:
    PatternLint(const SymbolText& text, int code, std::vector<Finding>& findings)
        : m_text(text),
          m_code(code),
          m_tokens(text.Head(code).number),
          m_symbol(text.library.lineClasses[static_cast<std::size_t>(text.Head(code).position)]),
          m_findings(findings) {}

    void Run() {
        const std::string& pattern = m_text.Line(m_text.At(m_code).first + 1);
        if (!pattern.empty() && pattern[0] == '*') return;  // a header, and reported as one
        LintHeader();
        if (m_symbol.value[19] > kVertexMode)
            LintVertexMode();
        else if (m_tokens > 0)
            LintPatternMode();
    }

 private:
    void Say(int behindHeader, Weight weight, std::string what) {
        m_findings.push_back({m_text.At(m_code).first + behindHeader, m_code, weight, std::move(what)});
    }
    std::string Token(int i) const { return std::string(1, m_symbol.code[i]) + Shown(m_symbol.value[i]); }
    bool IsRun(int i) const { return m_symbol.code[i] == '+' || m_symbol.code[i] == '-'; }
    std::string_view Letters() const { return {m_symbol.code, static_cast<std::size_t>(m_tokens)}; }
    bool HasLetter(char letter) const { return Letters().find(letter) != std::string_view::npos; }

    void LintHeader() {
        constexpr char kLetters[] = "CIAD";
        for (int slot = 19; slot > 15; --slot) {
            const char letter = m_symbol.code[slot];
            // A number without its own letter counts for A; the others are not looked at, or turn the mode.
            if (letter == 0 || letter == kLetters[slot - 16]) continue;
            Say(0, Weight::doubtful,
                Phrase("header token {0} is {1} where {2} is expected", 20 - slot, Token(slot), kLetters[slot - 16]));
        }
    }

    void LintSymbolToken(int i) {
        const double value = m_symbol.value[i];
        if (value != std::floor(value))
            Say(1, Weight::doubtful, Phrase("the code of {0} is cut to a whole number", Token(i)));
        const int placed = value > 0.0 && value < 1000.0 ? static_cast<int>(value) : 0;
        if (!m_text.Has(placed))
            Say(1, Weight::lost, Phrase("{0} places a code that the file does not have: nothing, or a dot", Token(i)));
        else if (!m_text.Is(placed, SymbolStatusG))
            Say(1, Weight::lost, Phrase("{0} places a code that is no graphic symbol: nothing, or a dot", Token(i)));
    }

    void LintVertexMode() {
        const double d = m_symbol.value[19];
        const int count = static_cast<int>(std::min(d, 1000.0) + 0.001);
        if (m_symbol.code[19] != 'D')
            Say(0, Weight::doubtful, Phrase("vertex symbols without the letter D: no connecting line is drawn"));
        if (count < 1 || count > 3 || d != std::floor(d))
            Say(0, Weight::doubtful, Phrase("D counts vertex symbols from 1 to 3, here {0}", Shown(d)));
        const double a = m_symbol.value[18];
        if (a != 0.0 && a != 1.0) Say(0, Weight::doubtful, Phrase("A is 0 or 1; A{0} counts as 0", Shown(a)));
        for (int i = 0; i < std::min(count, 3); ++i) {
            if (i >= m_tokens || m_symbol.code[i] != 'G') {
                Say(1, Weight::lost,
                    Phrase("D{0} needs {1} tokens G: a message is shown and nothing is drawn", Shown(d),
                           std::min(count, 3)));
                return;
            }
            LintSymbolToken(i);
        }
        if (m_tokens > count) Say(1, Weight::doubtful, Phrase("tokens beyond the count of D are not used"));
    }

    void LintPatternMode() {
        double cycle = 0.0;
        for (int i = 0; i < m_tokens; ++i) {
            const char letter = m_symbol.code[i];
            if (IsRun(i)) {
                cycle += m_symbol.value[i];
                if (m_symbol.value[i] < 0.0)
                    Say(1, Weight::lost, Phrase("a length below 0 in {0} steps backwards", Token(i)));
                if (m_symbol.value[i] == 0.0) Say(1, Weight::doubtful, Phrase("{0} has no length", Token(i)));
            } else if (letter == 'G') {
                LintSymbolToken(i);
            } else if (letter == 0 || std::strchr("PLMRW", letter) == nullptr) {
                Say(1, Weight::doubtful,
                    Phrase("\"{0}\" means nothing: it takes a place and draws nothing", std::string(1, letter)));
            }
        }
        LintAdvance(cycle);
        LintCompanions();
    }

    // A pattern has to move on: ten marks in a row end the line with a message.
    void LintAdvance(double cycle) {
        int marks = 0, longest = 0;
        for (int i = 0; i < 2 * m_tokens; ++i) {
            marks = IsRun(i % m_tokens) ? 0 : marks + 1;
            longest = std::max(longest, marks);
        }
        if (longest >= std::min(kMarksInARow, 2 * m_tokens))
            Say(1, Weight::lost,
                Phrase("ten tokens without a length in a row: the line ends with a message at its first segment"));
        else if (!(cycle > 0.0))
            Say(1, Weight::lost, Phrase("the lengths add up to nothing: the pattern never gets on along the line"));
        else if (cycle < kLeastCycle)
            Say(1, Weight::doubtful,
                Phrase("the pattern repeats every {0} mm, which cannot be seen: zenro draws a plain line",
                       Shown(cycle)));
    }

    void LintCompanions() {
        const std::string_view letters = Letters();
        const auto sides =
            std::count_if(letters.begin(), letters.end(), [](char c) { return c == 'L' || c == 'M' || c == 'R'; });
        double width = 0.0;
        int widths = 0;
        for (int i = 0; i < m_tokens; ++i)
            if (m_symbol.code[i] == 'W') {
                width = m_symbol.value[i];
                ++widths;
            }
        const bool solid = !HasLetter('-');
        if (sides > 1) Say(1, Weight::doubtful, Phrase("of several tokens L, M, R the last one counts"));
        if (widths > 1) Say(1, Weight::doubtful, Phrase("of several tokens W the last one counts"));
        if (sides == 0 && widths > 0)
            Say(1, Weight::doubtful,
                solid ? Phrase("W without L, M or R draws a companion on the left")
                      : Phrase("W without L, M or R draws no companion"));
        if (HasLetter('M') && solid && width / 2.0 * kLargestScale / 1000.0 <= kLeastWidth)
            Say(1, Weight::lost, Phrase("M on a solid line with W{0} draws nothing at all at 1:500", Shown(width)));
        else if (sides > 0 && !(width > 0.0))
            Say(1, Weight::lost, Phrase("L, M and R need a width W above 0: there is no companion"));
    }

    const SymbolText& m_text;
    int m_code;
    int m_tokens;
    const LCBODY& m_symbol;
    std::vector<Finding>& m_findings;
};

}  // namespace

void LintPatterns(const SymbolText& text, std::vector<Finding>& findings) {
    for (int code = 1; code < zm::symbol::kHeads; ++code)
        if (text.Is(code, SymbolStatusLC)) PatternLint(text, code, findings).Run();
}

}  // namespace zm::tool::symbols
