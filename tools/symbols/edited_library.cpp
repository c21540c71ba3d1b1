#include "tools/symbols/edited_library.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "runtime/text/gbk.h"
#include "symbol/file/symbol_file.h"
#include "tools/kit/translation.h"
#include "tools/symbols/symbol_text.h"

namespace zm::tool::symbols {
namespace {

std::vector<std::string> RawLines(const std::string& bytes) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = bytes.find('\n', at);
        const std::size_t next = end == std::string::npos ? bytes.size() : end + 1;
        lines.push_back(bytes.substr(at, next - at));
        at = next;
    }
    return lines;
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::string line : RawLines(text)) {
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
        lines.push_back(line);
    }
    while (!lines.empty() && lines.back().find_first_not_of(" \t") == std::string::npos) lines.pop_back();
    return lines;
}

// The lines of an edit as the file has them. A text that does not begin with a header would go to the symbol above.
std::vector<std::string> FileLines(const Edit& edit, std::string& fault) {
    std::vector<std::string> lines = LinesOf(edit.text);
    if (!lines.empty() && (lines[0].size() < 2 || lines[0][0] != '*' || lines[0][1] == '$')) {
        fault = Phrase(
            "code {0}: the first line is no header such as \"*17 G\"; write it, or the lines are taken for "
            "those of the symbol above.",
            edit.code);
        return {};
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        int lost = 0;
        lines[i] = gbk::FromUtf8(lines[i], &lost);
        if (lost > 0)
            fault = Phrase("code {0}, line {1}: has characters that GBK has not; write others.", edit.code, i + 1);
        else if (lines[i].compare(0, 2, "*$") == 0)
            fault = Phrase("code {0}, line {1}: \"*$\" ends the library; take it out.", edit.code, i + 1);
        else if (lines[i].size() > symbol::kLineBytes)
            fault = Phrase("code {0}, line {1}: longer than {2} bytes; make two of it.", edit.code, i + 1,
                           symbol::kLineBytes);
        if (!fault.empty()) return {};
    }
    return lines;
}

int EndLine(const SymbolText& text) {
    for (std::size_t i = 0; i < text.lines.size(); ++i)
        if (text.lines[i].compare(0, 2, "*$") == 0) return static_cast<int>(i) + 1;
    return static_cast<int>(text.lines.size()) + 1;
}

// Numbers of lines move with what is above them.
std::string WithoutNumbers(const Finding& finding) {
    std::string text = std::to_string(finding.code) + " ";
    for (const char c : finding.text)
        if (std::isdigit(static_cast<unsigned char>(c)) == 0) text += c;
    return text;
}

}  // namespace

EditedLibrary PutEdits(const char* path, const std::string& bytes, const std::vector<Edit>& edits, std::string& fault) {
    SymbolText text;
    ReadSymbolText(path, text);
    std::vector<std::string> raw = RawLines(bytes);
    const std::string end = !raw.empty() && raw[0].size() > 1 && raw[0][raw[0].size() - 2] == '\r' ? "\r\n" : "\n";
    if (!raw.empty() && raw.back().back() != '\n') raw.back() += end;
    std::multimap<int, const Edit*> starts;  // by the line that each comes before
    for (const Edit& edit : edits)
        starts.emplace(text.Has(edit.code) ? text.At(edit.code).first : EndLine(text), &edit);

    EditedLibrary edited;
    int written = 0;
    const auto put = [&](const Edit& edit) {
        const std::vector<std::string> lines = FileLines(edit, fault);
        edited.places.push_back({edit.code, written + 1, static_cast<int>(lines.size())});
        for (const std::string& line : lines) edited.bytes += line + end;
        written += static_cast<int>(lines.size());
    };
    for (int line = 1, skipTo = 1; line <= static_cast<int>(raw.size()) + 1; ++line) {
        for (auto [at, last] = starts.equal_range(line); at != last && fault.empty(); ++at) {
            put(*at->second);
            if (text.Has(at->second->code)) skipTo = text.At(at->second->code).last + 1;
        }
        if (line < skipTo || line > static_cast<int>(raw.size())) continue;
        edited.bytes += raw[static_cast<std::size_t>(line) - 1];
        ++written;
    }
    return edited;
}

std::string TextOf(const Symbol& symbol) {
    std::string text;
    for (const std::string& line : symbol.source) text += line + "\n";
    return text;
}

std::vector<Finding> FindingsOf(const std::vector<Finding>& before, const std::vector<Finding>& after,
                                const EditPlace& place) {
    std::map<std::string, int> known;
    for (const Finding& one : before) ++known[WithoutNumbers(one)];
    std::vector<Finding> found;
    for (Finding one : after) {
        const bool inside = one.line >= place.first && one.line < place.first + place.count;
        const bool old = known[WithoutNumbers(one)]-- > 0;
        if (!inside && old) continue;
        one.line = inside ? one.line - place.first + 1 : 0;
        found.push_back(std::move(one));
    }
    return found;
}

}  // namespace zm::tool::symbols
