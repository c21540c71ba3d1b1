// Lint: the reader's own remarks in words, and the order of all findings.
#include "tools/symbols/lint.h"

#include <algorithm>

#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "tools/kit/translation.h"

namespace zm::tool::symbols {

namespace {

using zm::scan::Scanner;
using zm::symbol::Remark;

struct Words {
    Weight weight;
    const char* text;
};

Words WordsOf(Remark what) {
    switch (what) {
        case Remark::kHeaderWithoutCode:
            return {Weight::lost, N_("this header has no code, so it is skipped with the lines after it")};
        case Remark::kCodeOutOfRange:
            return {Weight::lost, N_("codes are 1 to 999; this header is skipped with the lines after it")};
        case Remark::kUnknownKind:
            return {Weight::lost, N_("the kind is none of G, H, L, LC, E, Y; the code draws as a plain line")};
        case Remark::kKindOfHeaderBefore:
            return {Weight::doubtful, N_("the header has no kind, so that of the one before is taken; write it")};
        case Remark::kCodeTwice:
            return {Weight::lost, N_("the code was defined above; this definition counts, that one is out of reach")};
        case Remark::kLineSplit:
            return {Weight::lost, N_("the line is longer than 179 bytes and is read as several lines; shorten it")};
        case Remark::kUnknownOperator:
            return {Weight::lost, N_("operators are 1 to 5; this line draws nothing and shows a message at loading")};
        case Remark::kOperatorIgnored:
            return {Weight::lost, N_("operators 6 to 9 are accepted and draw nothing")};
        case Remark::kOperatorRepeated:
            return {Weight::lost,
                    N_("an empty line in a body repeats the operator before without coordinates; remove it")};
        case Remark::kNumbersMissing:
            return {Weight::lost, N_("numbers are missing: the line draws nothing, or less than it says")};
        case Remark::kSegmentWithoutEnd:
            return {Weight::lost,
                    N_("a segment with one point is drawn to the far corner (-100 m, -100 m) of the paper")};
        case Remark::kPolylineIndented:
            return {Weight::lost, N_("a blank before the operator of a polyline: its points are not read")};
        case Remark::kPairTwice:
            return {Weight::doubtful, N_("a doubled blank in a polyline: the point after it is read twice")};
        case Remark::kSweepEndsBody:
            return {Weight::lost, N_("an arc of -100 degrees or less is taken for the end of a record")};
        case Remark::kUnknownHatchEntry:
            return {Weight::lost, N_("hatch entries are of type 1 to 4; this one draws nothing")};
        case Remark::kHeaderTakenAsPattern:
            return {Weight::lost, N_("there is a header where the pattern of the LC symbol above belongs")};
        case Remark::kPatternEmpty:
            return {Weight::doubtful, N_("the pattern has no tokens; it draws as a plain line")};
        case Remark::kPatternEndedByBlank:
            return {Weight::lost, N_("a leading or doubled blank ends the pattern; the tokens after it are lost")};
        case Remark::kTooManyTokens:
            return {Weight::lost, N_("a pattern has at most 16 tokens; those after them are lost")};
        case Remark::kTokenTooLong:
            return {Weight::lost, N_("a token has at most 19 characters; this one is lost")};
        case Remark::kTooManyLineClasses:
            return {Weight::lost, N_("the table of line classes is full at 300; this one draws as a plain line")};
        case Remark::kLibraryTooLarge:
            return {Weight::lost, N_("the library is too large: reading stops here, and what follows does not exist")};
        case Remark::kOperatorLosesRecord:
        case Remark::kBodyEndedByText:
        case Remark::kGridDividesByZero:
            break;  // these need the lines around them, or the numbers
    }
    return {Weight::lost, N_("")};
}

/// What an operator of 0 or below in the given line does to its symbol: the line of the record that is lost by it, 0 if
/// none is.
///
/// The lookup takes as many end marks as the body has records. An uncounted one among them pushes out the last record
/// that is left; one after them does no harm.
int LostLine(const SymbolText& text, int header, int line) {
    std::vector<int> records, ends;
    int op = 0;
    for (int i = header + 1; i <= static_cast<int>(text.lines.size()); ++i) {
        const std::string& body = text.Line(i);
        if (!body.empty() && body[0] == '*') break;
        if (!Scanner(body.c_str()).Int(op) && !Scanner(body.c_str()).AtEnd()) break;
        if (op > 5) continue;
        ends.push_back(i);
        if (op >= 1) records.push_back(i);
    }
    std::size_t pushed = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (std::find(records.begin(), records.end(), ends[i]) != records.end()) continue;
        ++pushed;
        if (ends[i] == line) return records[records.size() - pushed];
    }
    return 0;
}

/// The header above a line.
int HeaderAbove(const SymbolText& text, int line) {
    while (line > 0 && (text.Line(line).empty() || text.Line(line)[0] != '*')) --line;
    return line;
}

Finding LostRecord(const SymbolText& text, int line, int code) {
    const int lost = LostLine(text, HeaderAbove(text, line), line);
    Finding finding{line, code, Weight::doubtful,
                    Phrase("an operator of 0 or below leaves an end mark that is not counted")};
    if (lost == 0) return finding;
    finding.weight = Weight::lost;
    finding.text += Phrase(", so the symbol loses its record in line {0}: \"{1}\"", lost, gbk::ToUtf8(text.Line(lost)));
    return finding;
}

/// The first line after one, before the next header, that would be a record if the body had not ended; 0 if none.
int StrandedRecord(const SymbolText& text, int line) {
    int value = 0;
    for (int i = line + 1; i <= static_cast<int>(text.lines.size()); ++i) {
        if (!text.Line(i).empty() && text.Line(i)[0] == '*') return 0;
        if (Scanner(text.Line(i).c_str()).Int(value)) return i;
    }
    return 0;
}

}  // namespace

void LintReading(const SymbolText& text, std::vector<Finding>& findings) {
    for (const auto& remark : text.remarks) {
        if (remark.what == Remark::kOperatorLosesRecord) {
            findings.push_back(LostRecord(text, remark.line, remark.code));
        } else if (remark.what == Remark::kBodyEndedByText) {
            // Free text after a body is no fault, unless more of the body follows it.
            if (const int stranded = StrandedRecord(text, remark.line); stranded != 0)
                findings.push_back({remark.line, remark.code, Weight::lost,
                                    Phrase("this line ends the body, so line {0} is not read", stranded)});
        } else if (remark.what != Remark::kGridDividesByZero) {  // said by LintHatches
            const Words words = WordsOf(remark.what);
            findings.push_back({remark.line, remark.code, words.weight, Translated(words.text)});
        }
    }
    for (std::size_t i = 0; i < text.lines.size(); ++i) {
        if (text.lines[i].compare(0, 2, "*$") != 0) continue;
        for (std::size_t j = i + 1; j < text.lines.size(); ++j)
            if (!text.lines[j].empty() && text.lines[j][0] == '*') {
                findings.push_back({static_cast<int>(j + 1), 0, Weight::lost,
                                    Phrase("line {0} ends the file; this header is not read", i + 1)});
                break;
            }
        break;
    }
}

std::string Shown(double value) {
    return numbers::Text("%.6g", value);
}

std::vector<Finding> Lint(const char* path) {
    SymbolText text;
    std::vector<Finding> findings;
    if (!ReadSymbolText(path, text)) return findings;
    LintReading(text, findings);
    LintHeaders(text, findings);
    LintGraphics(text, findings);
    LintPatterns(text, findings);
    LintHatches(text, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return findings;
}

std::string FindingText(const std::string& path, const Finding& finding) {
    std::string text = path + ":" + std::to_string(finding.line) + ": ";
    if (finding.code != 0) text += Phrase("code {0}: ", finding.code);
    if (finding.weight == Weight::doubtful) text += Phrase("doubtful: ");
    return Phrase("{0}{1}.", text, finding.text);
}

}  // namespace zm::tool::symbols
