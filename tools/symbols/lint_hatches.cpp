// Lint of hatches: entries that place nothing, and entries that are never reached.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "runtime/truncated.h"
#include "symbol/area/hatch_lines.h"
#include "symbol/file/symbol_file.h"
#include "tools/kit/translation.h"
#include "tools/symbols/lint.h"

namespace zm::tool::symbols {

namespace {

using zm::scan::Scanner;
using zm::symbol::Remark;

/// The numbers of an entry, with the defaults of those that are missing.
struct Entry {
    int line = 0;
    int type = 0;
    float values[5] = {};
};

/// The entries of a hatch with their lines, as the reader takes them.
std::vector<Entry> EntriesOf(const SymbolText& text, int code) {
    std::vector<Entry> entries;
    const int end = static_cast<int>(text.lines.size());
    for (int i = text.At(code).first + 1; i <= end && static_cast<int>(entries.size()) < text.Head(code).number; ++i) {
        Entry entry;
        std::copy(std::begin(symbol::kGridDefaults), std::end(symbol::kGridDefaults), entry.values);
        entry.line = i;
        Scanner line(text.Line(i).c_str());
        if (!line.Int(entry.type)) break;
        for (float& value : entry.values)
            if (!line.Real(value)) break;
        entries.push_back(entry);
        if (entry.type == 4) ++i;  // the line of the rows
    }
    return entries;
}

class HatchLint {
 public:
    HatchLint(const SymbolText& text, int code, std::vector<Finding>& findings)
        : m_text(text), m_code(code), m_findings(findings) {}

    void Run() {
        const int header = m_text.At(m_code).first;
        const std::vector<Entry> entries = EntriesOf(m_text, m_code);
        if (entries.empty()) Say(header, Weight::doubtful, Phrase("the hatch has no entry: only the outline is drawn"));
        const auto style =
            Truncated(m_text.library.body[static_cast<std::size_t>(m_text.Head(m_code).position)].point.x);
        if (style < 0 || style > 6)
            Say(header, Weight::doubtful, Phrase("pen styles of the outline are 0 to 6, here {0}", style));
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (i > 0 && (entries[0].type == 3 || entries[0].type == 4)) {
                Say(entries[i].line, Weight::lost, Phrase("entries after a first brush or bitmap are not looked at"));
                break;
            }
            LintEntry(entries[i], i == 0);
        }
    }

 private:
    void Say(int line, Weight weight, std::string what) {
        m_findings.push_back({line, m_code, weight, std::move(what)});
    }

    bool IsRemarked(int line, Remark what) const {
        return std::any_of(m_text.remarks.begin(), m_text.remarks.end(),
                           [&](const auto& remark) { return remark.line == line && remark.what == what; });
    }

    void LintEntry(const Entry& entry, bool first) {
        if (entry.type == 1)
            LintGrid(entry);
        else if (entry.type == 2 && !(entry.values[1] > 0.0F))
            Say(entry.line, Weight::lost, Phrase("a spacing of {0} draws no lines", Shown(entry.values[1])));
        else if ((entry.type == 3 || entry.type == 4) && !first)
            Say(entry.line, Weight::lost, Phrase("a brush or bitmap after another entry draws nothing; put it first"));
        else if (entry.type == 3 || entry.type == 4)
            LintFill(entry);
    }

    void LintGrid(const Entry& entry) {
        const float a1 = entry.values[0], d1 = entry.values[1], a2 = entry.values[2], d2 = entry.values[3];
        if (IsRemarked(entry.line, Remark::kGridDividesByZero)) {
            Say(entry.line, Weight::lost,
                Phrase("the angles {0} and {1} divide a step by zero, so the entry places nothing; an upright grid is "
                       "written 0 and 90",
                       Shown(a1), Shown(a2)));
        } else if (symbol::IsWholeHalfTurn((a1 - a2) / 180.0)) {
            Say(entry.line, Weight::lost, Phrase("the two families are parallel, so the entry places nothing"));
        }
        if (!(d1 > 0.0F) || !(d2 > 0.0F))
            Say(entry.line, Weight::lost,
                Phrase("spacings of {0} and {1} place nothing; both have to be above 0", Shown(d1), Shown(d2)));
        const float placed = entry.values[4];
        const int code = placed > 0.0F && placed < 1000.0F ? static_cast<int>(placed) : 0;
        if (!m_text.Is(code, SymbolStatusG))
            Say(entry.line, Weight::lost,
                Phrase("code {0} is no graphic symbol of this file: the entry places nothing, or dots", Shown(placed)));
    }

    // The file's numbers here are whole: style or count, then the three parts of the colour.
    void LintFill(const Entry& entry) {
        if (entry.type == 3 && (entry.values[0] < 0.0F || entry.values[0] > 6.0F))
            Say(entry.line, Weight::doubtful,
                Phrase("brush styles are 0 to 6; {0} draws as 1", Shown(entry.values[0])));
        if (entry.values[1] < 0.0F) return;  // the next colour of the cycle
        for (int i = 1; i < 4; ++i)
            if (entry.values[i] < 0.0F || entry.values[i] > 255.0F)
                Say(entry.line, Weight::doubtful,
                    Phrase("a colour has parts from 0 to 255; of {0} the low byte counts", Shown(entry.values[i])));
    }

    const SymbolText& m_text;
    int m_code;
    std::vector<Finding>& m_findings;
};

}  // namespace

void LintHatches(const SymbolText& text, std::vector<Finding>& findings) {
    for (int code = 1; code < zm::symbol::kHeads; ++code)
        if (text.Is(code, SymbolStatusH)) HatchLint(text, code, findings).Run();
}

}  // namespace zm::tool::symbols
