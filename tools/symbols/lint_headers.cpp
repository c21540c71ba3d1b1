// Lint of notes, special lines and ornaments.
#include <algorithm>

#include "runtime/text/gbk.h"
#include "tools/kit/translation.h"
#include "tools/symbols/lint.h"
#include "tools/symbols/ornament_table.h"

namespace zm::tool::symbols {

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
        findings.push_back(
            {line, code, Weight::lost,
             Phrase("the note is cut inside a character whose second byte is a backslash; use another word")});
    } else if (invalid != 0) {
        findings.push_back({line, code, Weight::doubtful, Phrase("the note is not GBK: \"{0}\"", shown)});
    }
}

void LintOrnament(const SymbolText& text, int code, std::vector<Finding>& findings) {
    const int number = text.Head(code).number;
    const int line = text.At(code).first;
    if (!OrnamentDraws(number)) {
        findings.push_back({line, code, Weight::lost, Phrase("ornament {0} draws nothing", number)});
        return;
    }
    const Ornament& ornament = Ornaments()[static_cast<std::size_t>(number) - 1];
    for (const int leaned : ornament.lines)
        if (!text.Is(leaned, SymbolStatusLC) && !text.Is(leaned, SymbolStatusL))
            findings.push_back(
                {line, code, text.Has(leaned) ? Weight::lost : Weight::doubtful,
                 Phrase(text.Has(leaned)
                            ? N_("the ornament draws with code {0}, which is no line symbol: these strokes "
                                 "are missing")
                            : N_("the ornament draws with code {0}, which the file does not have: a plain "
                                 "line is drawn instead"),
                        leaned)});
    for (const int leaned : ornament.points)
        if (!text.Is(leaned, SymbolStatusG))
            findings.push_back(
                {line, code, Weight::lost,
                 Phrase(
                     "the ornament places code {0}, which is no graphic symbol of this file: it is missing, or a dot",
                     leaned)});
}

}  // namespace

void LintHeaders(const SymbolText& text, std::vector<Finding>& findings) {
    for (int code = 1; code < kHeads; ++code) {
        if (!text.Has(code)) continue;
        LintNote(text, code, findings);
        const SymbolHead& head = text.Head(code);
        if (head.status == SymbolStatusY) LintOrnament(text, code, findings);
        if (head.status == SymbolStatusE && head.number != 1 && head.number != 12)
            findings.push_back({text.At(code).first, code, Weight::lost,
                                Phrase("special lines are 1 and 12; number {0} draws nothing", head.number)});
    }
}

}  // namespace zm::tool::symbols
