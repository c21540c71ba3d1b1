// The symbols of a file as records, as a table, and one of them in full.
#include <algorithm>
#include <map>

#include "runtime/files/files.h"
#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "runtime/truncated.h"
#include "tools/kit/translation.h"
#include "tools/symbols/ornament_table.h"
#include "tools/symbols/symbol_text.h"
#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {

namespace {

const char* KindName(int status) {
    switch (status) {
        case SymbolStatusG:
            return "G";
        case SymbolStatusLC:
            return "LC";
        case SymbolStatusE:
            return "E";
        case SymbolStatusH:
            return "H";
        case SymbolStatusY:
            return "Y";
        default:
            return "L";
    }
}

const char* KindMeaning(const std::string& kind) {
    if (kind == "G") return N_("graphic symbol at a point");
    if (kind == "LC") return N_("line pattern");
    if (kind == "E") return N_("special line");
    if (kind == "H") return N_("area fill");
    if (kind == "Y") return N_("coded ornament");
    return N_("plain line");
}

Symbol SymbolOf(const SymbolText& text, int code) {
    Symbol symbol;
    symbol.code = code;
    symbol.kind = KindName(text.Head(code).status);
    symbol.number = text.Head(code).number;
    symbol.note = gbk::ToUtf8(text.library.notes[static_cast<std::size_t>(code)]);
    symbol.size = double{text.library.sizes[static_cast<std::size_t>(code)]};
    symbol.firstLine = text.At(code).first;
    symbol.lastLine = text.At(code).last;
    for (int line = symbol.firstLine; line <= symbol.lastLine; ++line)
        symbol.source.push_back(gbk::ToUtf8(text.Line(line)));
    return symbol;
}

std::string LineRange(const Symbol& symbol) {
    std::string range = std::to_string(symbol.firstLine);
    if (symbol.lastLine > symbol.firstLine) range += "-" + std::to_string(symbol.lastLine);
    return range;
}

/// The codes that a symbol draws with, in order and once each.
std::vector<int> LeansOn(const Symbol& symbol) {
    std::vector<int> codes;
    const auto add = [&codes](int code) {
        if (std::find(codes.begin(), codes.end(), code) == codes.end()) codes.push_back(code);
    };
    if (symbol.kind == "Y" && OrnamentDraws(symbol.number)) {
        const Ornament& ornament = Ornaments()[static_cast<std::size_t>(symbol.number) - 1];
        for (const int code : ornament.lines) add(code);
        for (const int code : ornament.points) add(code);
    } else if (symbol.kind == "LC" && symbol.source.size() > 1) {
        zm::scan::Scanner pattern(symbol.source[1].c_str());
        for (std::string_view token; pattern.Word(token);)
            if (token[0] == 'G') add(Truncated(zm::scan::LeadingNumber(std::string(token.substr(1)).c_str())));
    } else if (symbol.kind == "H") {
        for (std::size_t i = 1; i < symbol.source.size(); ++i) {
            zm::scan::Scanner entry(symbol.source[i].c_str());
            float values[6] = {0, 45, 10, 135, 10, 830};
            for (float& value : values)
                if (!entry.Real(value)) break;
            if (values[0] == 1.0F) add(Truncated(values[5]));
        }
    }
    return codes;
}

std::string CodeList(const std::vector<int>& codes) {
    std::string list;
    for (const int code : codes) list += (list.empty() ? "" : ", ") + std::to_string(code);
    return list;
}

}  // namespace

bool CanRead(const char* path) {
    std::FILE* file = files::Open(path, "rb");
    if (file != nullptr) std::fclose(file);
    return file != nullptr;
}

std::vector<Symbol> ReadSymbols(const char* path) {
    SymbolText text;
    std::vector<Symbol> symbols;
    if (!ReadSymbolText(path, text)) return symbols;
    for (int code = 1; code < zm::symbol::kHeads; ++code)
        if (text.Has(code)) symbols.push_back(SymbolOf(text, code));
    return symbols;
}

std::string ListText(const std::vector<Symbol>& symbols, const std::string& kind) {
    std::string text = "code kind  size/no  lines        note\n";
    std::map<std::string, int> counts;
    int shown = 0;
    for (const Symbol& symbol : symbols) {
        if (!kind.empty() && symbol.kind != kind) continue;
        ++counts[symbol.kind];
        ++shown;
        const std::string amount =
            symbol.kind == "G" ? numbers::Text("%.2f mm", symbol.size) : std::to_string(symbol.number);
        text += numbers::Text("%4d %-3s %9s  %-11s  ", symbol.code, symbol.kind.c_str(), amount.c_str(),
                              LineRange(symbol).c_str()) +
                symbol.note + "\n";
    }
    text += std::to_string(shown) + (shown == 1 ? " symbol" : " symbols");
    for (const auto& [name, count] : counts) text += ", " + name + " " + std::to_string(count);
    return text + "\n";
}

std::string ShowText(const std::vector<Symbol>& symbols, int code) {
    const auto found =
        std::find_if(symbols.begin(), symbols.end(), [code](const Symbol& symbol) { return symbol.code == code; });
    if (found == symbols.end()) return {};
    std::string text = Phrase("code {0}  {1}\n", code, found->note);
    text += Phrase("kind {0}, {1}", found->kind, Translated(KindMeaning(found->kind)));
    if (found->kind == "G") text += Phrase(", {0} mm, {1} records", numbers::Text("%.2f", found->size), found->number);
    if (found->kind == "LC") text += Phrase(", {0} tokens", found->number);
    if (found->kind == "H") text += Phrase(", {0} entries", found->number);
    if (found->kind == "Y" || found->kind == "E" || found->kind == "L") text += Phrase(", number {0}", found->number);
    text += "\n";
    if (const std::string leaned = CodeList(LeansOn(*found)); !leaned.empty())
        text += Phrase("draws with {0}\n", leaned);
    std::vector<int> users;
    for (const Symbol& other : symbols) {
        const std::vector<int> codes = LeansOn(other);
        if (other.code != code && std::find(codes.begin(), codes.end(), code) != codes.end())
            users.push_back(other.code);
    }
    if (!users.empty()) text += Phrase("used by {0}\n", CodeList(users));
    for (std::size_t i = 0; i < found->source.size(); ++i)
        text += numbers::Text("%6d  ", found->firstLine + static_cast<int>(i)) + found->source[i] + "\n";
    return text;
}

}  // namespace zm::tool::symbols
