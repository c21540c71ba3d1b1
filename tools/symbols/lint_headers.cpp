// Lint of notes, special lines and ornaments.
#include <algorithm>

#include "runtime/gbk.h"
#include "tools/symbols/lint.h"
#include "tools/symbols/ornament_table.h"

namespace zm::tools::symbols {

namespace {

using zm::symbol::kHeads;

// The reader ends a note at a backslash byte, even where it is the second half of a character.
void LintNote(const SymbolText& text, int code, std::vector<Finding>& findings) {
    const std::string& header = text.Line(text.At(code).first);
    const std::string& note = text.library.notes[static_cast<std::size_t>(code)];
    const int line = text.At(code).first;
    int invalid = 0;
    const std::string shown = gbk::ToUtf8(note, &invalid);
    const std::size_t at = note.empty() ? std::string::npos : header.find(note);
    const std::size_t behind = at == std::string::npos ? header.size() : at + note.size();
    if (behind < header.size() && header[behind] == '\\' && gbk::IsLead(note.back()) && invalid != 0) {
        findings.push_back({line, code, Weight::lost,
                            "the note is cut inside a character whose second byte is a backslash; use another word"});
    } else if (invalid != 0) {
        findings.push_back({line, code, Weight::doubtful, "the note is not GBK: \"" + shown + "\""});
    }
}

void LintOrnament(const SymbolText& text, int code, std::vector<Finding>& findings) {
    const int number = text.Head(code).number;
    const int line = text.At(code).first;
    if (!OrnamentDraws(number)) {
        findings.push_back({line, code, Weight::lost, "ornament " + std::to_string(number) + " draws nothing"});
        return;
    }
    const Ornament& ornament = Ornaments()[static_cast<std::size_t>(number) - 1];
    for (const int leaned : ornament.lines)
        if (!text.Is(leaned, SymbolStatusLC) && !text.Is(leaned, SymbolStatusL))
            findings.push_back({line, code, text.Has(leaned) ? Weight::lost : Weight::doubtful,
                                "the ornament draws with code " + std::to_string(leaned) +
                                    (text.Has(leaned) ? ", which is no line symbol: these strokes are missing"
                                                      : ", which the file does not have: a plain line stands for it")});
    for (const int leaned : ornament.points)
        if (!text.Is(leaned, SymbolStatusG))
            findings.push_back({line, code, Weight::lost,
                                "the ornament places code " + std::to_string(leaned) +
                                    ", which is no graphic symbol of this file: it is missing, or a dot"});
}

}  // namespace

void LintHeaders(const SymbolText& text, std::vector<Finding>& findings) {
    for (int code = 1; code < kHeads; ++code) {
        if (!text.Has(code)) continue;
        LintNote(text, code, findings);
        const SymbolHead& head = text.Head(code);
        if (head.status == SymbolStatusY) LintOrnament(text, code, findings);
        if (head.status == SymbolStatusE && head.number != 1 && head.number != 12)
            findings.push_back(
                {text.At(code).first, code, Weight::lost,
                 "special lines are 1 and 12; number " + std::to_string(head.number) + " draws nothing"});
    }
}

}  // namespace zm::tools::symbols
