// The states of the reader: between records, and inside the body of one symbol.
#include "symbol/file/symbol_file.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "symbol/area/hatch_lines.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr char kNoteMarks[] = "/\\;\"'";
constexpr char kNoteOpeners[] = "\"'/\\";  // skipped before a note; a semicolon is not
constexpr char kNoteEnds[] = "\\\n\r\"'/";

bool IsOneOf(char c, const char* set) {
    return c != '\0' && std::strchr(set, c) != nullptr;
}

}  // namespace

SymbolFileReader::SymbolFileReader(std::FILE* file, Library& library, std::vector<RemarkAt>* remarks)
    : m_library(library), m_remarks(remarks) {
    char block[16384];
    while (const std::size_t got = std::fread(block, 1, sizeof block, file)) m_text.append(block, got);
}

void SymbolFileReader::Read() {
    NextLine();
    while (m_haveLine) {
        if (!AtHeader()) {
            NextLine();
        } else if (AtEndLine() || TableFull()) {
            break;
        } else {
            ReadHeader();
        }
    }
    m_library.CountBodies();
}

void SymbolFileReader::NextLine() {
    m_line.clear();
    m_haveLine = m_at < m_text.size();
    if (!m_haveLine) return;
    if (!m_continued) ++m_lineNumber;
    m_continued = true;
    for (std::size_t bytes = 0; m_continued && bytes < kLineBytes && m_at < m_text.size(); ++bytes) {
        if (m_text[m_at] == '\r' && m_at + 1 < m_text.size() && m_text[m_at + 1] == '\n') ++m_at;
        const char c = m_text[m_at++];
        if (c == '\n')
            m_continued = false;
        else
            m_line += c;
    }
    if (m_continued && m_at < m_text.size()) Note(Remark::kLineSplit);
    // A zero byte ends a text line.
    m_line.resize(std::strlen(m_line.c_str()));
}

// Tested ahead of every header and nowhere else: a symbol that has begun is read to its end.
bool SymbolFileReader::TableFull() {
    if (m_library.body.size() < kBodyRecords && m_lineHeaders < kLineHeaders &&
        m_library.lineClasses.size() < kLineClasses)
        return false;
    Note(Remark::kLibraryTooLarge);
    _LMsg(texts::kLibraryTooLarge.gbk, nullptr, 0);
    return true;
}

void SymbolFileReader::ReadHeader() {
    std::string fields;
    if (!ScanHeader(fields)) {
        m_code = 0;
        NextLine();
        return;
    }
    const char first = m_kind.empty() ? '\0' : m_kind[0];
    if (first == 'G') {
        ReadGraphic();
    } else if (first == 'H') {
        ReadHatch(fields);
    } else if (first == 'L' && m_kind.size() > 1 && m_kind[1] == 'C') {
        ReadLineClass(fields);
    } else if (first == 'L') {
        StoreNumber(fields, SymbolStatusL);
    } else if (first == 'E') {
        StoreNumber(fields, SymbolStatusE);
    } else if (first == 'Y') {
        StoreNumber(fields, SymbolStatusY);
    } else {
        Note(Remark::kUnknownKind);
        NextLine();
    }
    m_code = 0;
}

bool SymbolFileReader::ScanHeader(std::string& fields) {
    const std::size_t mark = std::min(m_line.find_first_of(kNoteMarks), m_line.size());
    fields = m_line.substr(1, mark - 1);
    scan::Scanner scanner(fields.c_str());
    int code = 0;
    if (!scanner.Int(code)) {
        Note(Remark::kHeaderWithoutCode);
        return false;
    }
    m_code = code;
    std::string_view kind;
    // Required: a header without a kind takes that of the header before.
    if (scanner.Word(kind))
        m_kind = kind;
    else
        Note(Remark::kKindOfHeaderBefore);
    if (code < 1 || code > kLastCode) {
        Note(Remark::kCodeOutOfRange);
        return false;
    }
    if (m_defined[static_cast<std::size_t>(code)]) Note(Remark::kCodeTwice);
    m_defined[static_cast<std::size_t>(code)] = true;
    if (mark < m_line.size()) StoreNote(mark);
    return true;
}

// Bytewise, so that a double-byte character whose second byte is a backslash ends the note inside it.
void SymbolFileReader::StoreNote(std::size_t mark) {
    std::size_t begin = mark + 1;
    while (begin < m_line.size() && IsOneOf(m_line[begin], kNoteOpeners)) ++begin;
    const std::size_t end = std::min(m_line.find_first_of(kNoteEnds, begin), m_line.size());
    m_library.notes[static_cast<std::size_t>(m_code)] = m_line.substr(begin, end - begin);
}

// The integer after the kind; a missing one is 0.
int SymbolFileReader::HeaderNumber(const std::string& fields) {
    scan::Scanner scanner(fields.c_str());
    int code = 0;
    int number = 0;
    std::string_view kind;
    scanner.Int(code);
    scanner.Word(kind);
    scanner.Int(number);
    return number;
}

void SymbolFileReader::StoreNumber(const std::string& fields, int status) {
    Head() = {status, 0, HeaderNumber(fields)};
    ++m_lineHeaders;
    NextLine();
}

void SymbolFileReader::ReadHatch(const std::string& fields) {
    Head() = {SymbolStatusH, static_cast<int>(m_library.body.size()), 0};
    Put(PointRecord(static_cast<float>(HeaderNumber(fields)), 0.0F));
    for (NextLine(); m_haveLine && !AtHeader(); NextLine()) {
        int type = 0;
        if (!scan::Scanner(m_line.c_str()).Int(type)) {
            Note(Remark::kBodyEndedByText);
            break;
        }
        StoreHatchEntry(type);
        ++Head().number;
    }
}

void SymbolFileReader::StoreHatchEntry(int type) {
    Put(PointRecord(static_cast<float>(type), 0.0F));
    switch (type) {
        case 1: {
            float f[7] = {};
            std::copy(std::begin(kGridDefaults), std::end(kGridDefaults), f);
            ReadReals(f, 7);
            if (GridDividesByZero(f[0], f[2])) Note(Remark::kGridDividesByZero);
            Put(PointRecord(f[0], Paper(f[1])));
            Put(PointRecord(f[2], Paper(f[3])));
            Put(PointRecord(f[4], Paper(f[5])));
            Put(PointRecord(Paper(f[6]), 0.0F));
            break;
        }
        case 2: {
            float f[4] = {kGridDefaults[0], kGridDefaults[1], kGridDefaults[4], 0.0F};
            ReadReals(f, 4);
            Put(PointRecord(f[0], Paper(f[1])));
            Put(PointRecord(f[2], Paper(f[3])));
            break;
        }
        case 3:
        case 4:
            StoreFill(type);
            break;
        default:
            Note(Remark::kUnknownHatchEntry);
            break;
    }
    Put(Terminator());
}

// The numbers after the entry's type; what is missing keeps its default.
void SymbolFileReader::ReadReals(float* values, int count) {
    scan::Scanner scanner(m_line.c_str());
    int type = 0;
    scanner.Int(type);
    for (int i = 0; i < count; ++i)
        if (!scanner.Real(values[i])) return;
}

void SymbolFileReader::StoreFill(int type) {
    scan::Scanner scanner(m_line.c_str());
    int n[5] = {};  // type, style, red, green, blue
    for (int& number : n)
        if (!scanner.Int(number)) {
            Note(Remark::kNumbersMissing);
            break;
        }
    const int colour = n[2] < 0 ? -1 : (n[2] & 255) | (n[3] & 255) << 8 | (n[4] & 255) << 16;
    Put(RawRecord(type == 3 ? n[1] : 1, colour));
    if (type == 3) return;
    NextLine();
    scan::Scanner rows(m_line.c_str());
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    if (!rows.Hex(low) || !rows.Hex(high)) Note(Remark::kNumbersMissing);
    Put(RawRecord(static_cast<int>(low), static_cast<int>(high)));
}

void SymbolFileReader::ReadLineClass(const std::string& fields) {
    LCBODY symbol = {};
    scan::Scanner scanner(fields.c_str());
    int code = 0;
    std::string_view word;
    scanner.Int(code);
    scanner.Word(word);
    for (int slot = 19; slot >= kPatternTokens && scanner.Word(word); --slot) {
        symbol.code[slot] = word[0];
        symbol.value[slot] = scan::LeadingNumber(std::string(word.substr(1)).c_str());
    }
    symbol.value[17] /= 1000.0;
    NextLine();
    const int tokens = ReadPattern(symbol);
    if (m_library.lineClasses.size() < kLineClasses) {
        Head() = {SymbolStatusLC, static_cast<int>(m_library.lineClasses.size()), tokens};
        m_library.lineClasses.push_back(symbol);
    } else {
        Note(Remark::kTooManyLineClasses);
        _LMsg(texts::kTooManyLineClasses, nullptr, 0);
        ++m_lineHeaders;
    }
    NextLine();
}

// The tokens of the current line; their number.
int SymbolFileReader::ReadPattern(LCBODY& symbol) {
    if (AtHeader()) Note(Remark::kHeaderTakenAsPattern);
    int tokens = 0;
    std::size_t at = 0;
    while (at < m_line.size() && m_line[at] != ' ') {
        const std::size_t end = std::min(m_line.find(' ', at), m_line.size());
        const std::string token = m_line.substr(at, end - at);
        at = std::min(end + 1, m_line.size());
        if (token.size() > kTokenBytes) {
            Tell(Remark::kTokenTooLong, texts::kLongToken);
        } else if (tokens == kPatternTokens) {
            Tell(Remark::kTooManyTokens, texts::kTooManyTokens);
            break;
        } else {
            symbol.code[tokens] = token[0];
            symbol.value[tokens] = scan::LeadingNumber(token.c_str() + 1);
            ++tokens;
        }
    }
    if (tokens == 0) Note(Remark::kPatternEmpty);
    if (at < m_line.size() && tokens < kPatternTokens) Note(Remark::kPatternEndedByBlank);
    return tokens;
}

void SymbolFileReader::Tell(Remark what, const char* format) const {
    Note(what);
    _LMsg(numbers::Text(format, m_code).c_str(), nullptr, 0);
}

void SymbolFileReader::Note(Remark what) const {
    if (m_remarks != nullptr) m_remarks->push_back({m_lineNumber, m_code, what});
}

}  // namespace zm::symbol
