// Two symbol libraries side by side: what only one has, and what both have otherwise.
#include <algorithm>

#include "tools/kit/translation.h"
#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {
namespace {

std::string WithoutEnd(const std::string& line) {
    const std::size_t last = line.find_last_not_of(" \t\r");
    return last == std::string::npos ? std::string() : line.substr(0, last + 1);
}

std::vector<std::string> LinesOf(const Symbol& symbol) {
    std::vector<std::string> lines;
    for (const std::string& line : symbol.source) lines.push_back(WithoutEnd(line));
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
    return lines;
}

std::string HeadOf(const Symbol& symbol) {
    return std::to_string(symbol.code) + " " + symbol.kind + (symbol.note.empty() ? "" : " " + symbol.note);
}

// By the longest sequence that both have.
std::string ChangesOf(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    const std::size_t columns = b.size() + 1;
    std::vector<int> longest((a.size() + 1) * columns, 0);
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            longest[i * columns + j] = a[i] == b[j]
                                           ? longest[(i + 1) * columns + j + 1] + 1
                                           : std::max(longest[(i + 1) * columns + j], longest[i * columns + j + 1]);
    std::string text;
    std::size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            ++i;
            ++j;
        } else if (j == b.size() || (i < a.size() && longest[(i + 1) * columns + j] >= longest[i * columns + j + 1])) {
            text += "  - " + a[i++] + "\n";
        } else {
            text += "  + " + b[j++] + "\n";
        }
    }
    return text;
}

}  // namespace

std::string ChangesOf(const Symbol& before, const Symbol& after) {
    return ChangesOf(LinesOf(before), LinesOf(after));
}

bool Comparison::same() const {
    return changed.empty() && onlyFirst.empty() && onlySecond.empty();
}

Comparison Compare(const std::vector<Symbol>& first, const std::vector<Symbol>& second) {
    Comparison result;
    auto a = first.begin();
    auto b = second.begin();
    while (a != first.end() || b != second.end()) {
        if (b == second.end() || (a != first.end() && a->code < b->code))
            result.onlyFirst.push_back(*a++);
        else if (a == first.end() || b->code < a->code)
            result.onlySecond.push_back(*b++);
        else if (LinesOf(*a) == LinesOf(*b))
            ++a, ++b, ++result.alike;
        else
            result.changed.emplace_back(*a++, *b++);
    }
    return result;
}

std::string ComparisonText(const Comparison& comparison, const std::string& first, const std::string& second) {
    std::string text;
    for (const auto& [before, after] : comparison.changed)
        text += Phrase("{0}: changed", HeadOf(before)) + "\n" + ChangesOf(before, after);
    for (const Symbol& symbol : comparison.onlyFirst) text += Phrase("{0}: only in {1}", HeadOf(symbol), first) + "\n";
    for (const Symbol& symbol : comparison.onlySecond)
        text += Phrase("{0}: only in {1}", HeadOf(symbol), second) + "\n";
    return text +
           Phrase("{0} changed, {1} only in {2}, {3} only in {4}, {5} alike", comparison.changed.size(),
                  comparison.onlyFirst.size(), first, comparison.onlySecond.size(), second, comparison.alike) +
           "\n";
}

}  // namespace zm::tool::symbols
