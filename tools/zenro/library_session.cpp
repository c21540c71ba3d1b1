#include "tools/zenro/library_session.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <sstream>

#include "tools/zenro/text.h"
#include "zenromath/draw.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr int kCodes = 1000;
constexpr int kMaxClasses = 99;
constexpr char kDefaultProject[] = "project.ini";

// A file that the user named: there, readable, and with a name that the library can take.
std::string NamedFile(const std::string& option, const std::string& file) {
    std::error_code error;
    const fs::path path = fs::absolute(file, error);
    if (!fs::is_regular_file(path, error)) throw Failure(kNoInput, option + " " + file + ": no such file.");
    std::FILE* probe = std::fopen(path.c_str(), "rb");
    if (probe == nullptr) throw Failure(kNoInput, option + " " + file + ": cannot be opened; check its permissions.");
    std::fclose(probe);
    std::string name = LibraryPath(path);
    if (name.empty())
        throw Failure(kNoInput, option + " " + file + ": the path is longer than 255 bytes or has characters outside " +
                                    "GBK; use a shorter one.");
    return name;
}

std::string ProfileText(const std::string& file, const char* section, const char* key, const char* def) {
    char buffer[160];
    GetZenroProfileString(section, key, def, buffer, sizeof buffer, file.c_str(), 0);
    return buffer;
}

void CopyText(char* target, std::size_t size, const std::string& text) {
    const std::size_t count = std::min(size - 1, text.size());
    std::memcpy(target, text.data(), count);
    target[count] = '\0';
}

// The palette at load has the pure colours of a screen, and yellow cannot be read on paper. Where the user has set none
// of his own, these are taken: black, red, green, blue, ochre, purple, light blue, grey, brown.
void UsePaperColours() {
    static constexpr unsigned long kScreen[10] = {0x000000, 0x000000, 0x0000FF, 0x00FF00, 0xFF0000,
                                                  0x00FFFF, 0xFF00FF, 0xFFFF00, 0x008080, 0x5C5CC0};
    static constexpr unsigned long kPaper[10] = {0x000000, 0x000000, 0x2020B4, 0x3C8C14, 0xB45014,
                                                 0x14509C, 0x8C1E78, 0xC89650, 0x707070, 0x2D5FA0};
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    if (palette == nullptr || count != 10 || !std::equal(kScreen, kScreen + 10, palette)) return;
    std::copy(kPaper, kPaper + 10, palette);
}

// The lists of the note classes own their records and free them as C does.
struct Free {
    void operator()(void* record) const { std::free(record); }
};
template <class Kind>
using Record = std::unique_ptr<Kind, Free>;
template <class Kind>
Record<Kind> NewRecord() {
    Record<Kind> record(static_cast<Kind*>(std::calloc(1, sizeof(Kind))));
    if (record == nullptr) throw std::bad_alloc();
    return record;
}

// The form of a font line: screen font, text style, font name, slant.
void ReadFontLine(const std::string& line, NOTEFONT& font) {
    std::istringstream fields(line);
    std::string field;
    const auto next = [&] {
        std::getline(fields, field, ',');
        return field = Trim(field);
    };
    CopyText(font.screenFont, sizeof font.screenFont, next());
    CopyText(font.textStyle, sizeof font.textStyle, next());
    CopyText(font.fontName, sizeof font.fontName, next());
    if (!ReadWhole(next(), font.slant)) font.slant = 0;
    CopyText(font.logFont.lfFaceName, sizeof font.logFont.lfFaceName, font.screenFont);
}

}  // namespace

std::string ModuleDirectory() {
    return FromLibraryPath(_LFModDir()).string();
}

LibrarySession::LibrarySession(const LibraryOptions& options, ToolHost& host) {
    NameProject(options.project);
    ReloadLayers();
    const long before = host.messages();
    m_notes = std::make_unique<TqNoteLayBase>();
    if (!options.notes.empty()) ReadNotes(options.notes);
    if (GetTqNoteLayBasePt() == nullptr)
        throw Failure(kNoInput, "note classes: Orvnote.cod with classes and fonts is needed in " + ModuleDirectory() +
                                    (host.messages() > before ? "; the library says: " + host.lastMessage() : "") +
                                    ". Install the data files again.");
    const std::string symbols = options.symbols.empty() ? std::string() : NamedFile("--symbols", options.symbols);
    TsymbolInit(symbols.empty() ? nullptr : symbols.c_str());
    if (!options.blocks.empty()) ReadBlocks(options.blocks);
}

LibrarySession::~LibrarySession() {
    SetSymbolBlockTable(nullptr);
    if (IsTsymboled() != 0) TsymbolClose();
    SelectWorkingTqDC(nullptr);
    m_notes.reset();
    DeleteCengCi8Dlg();
}

void LibrarySession::ReloadLayers() {
    ReadCengCi();
    UsePaperColours();
}

void LibrarySession::NameProject(const std::string& project) {
    std::error_code error;
    const fs::path here = fs::current_path(error);
    std::string name =
        project.empty() ? LibraryPath(fs::path(ModuleDirectory()) / kDefaultProject) : NamedFile("--project", project);
    if (name.empty()) return;  // the library then works with its one default layer
    std::vector<char> text(name.c_str(), name.c_str() + name.size() + 1);
    char extension[] = ".ini";
    _LFInit(text.data(), extension, nullptr);
    // The library moves the process to the project; the paths of the command line are meant from where it was called.
    fs::current_path(here, error);
}

void LibrarySession::ReadNotes(const std::string& file) {
    // The profile functions take a path that begins with two separators as it stands, one with a single one not.
    const std::string name = "\\" + NamedFile("--notes", file);
    int total = 0;
    if (!ReadWhole(Trim(ProfileText(name, "NOTE CLASS", "TOTAL", "0")), total) || total < 1)
        throw Failure(kNoInput,
                      "--notes " + file + ": section [NOTE CLASS] has no TOTAL; this is no file of note classes.");
    auto& classes = *m_notes->GetNLayTbl();
    auto& fonts = *m_notes->GetFontTbl();
    std::vector<Record<NOTELAY>> read;
    for (int i = 1; i <= std::min(total, kMaxClasses); ++i) {
        char key[16];
        std::snprintf(key, sizeof key, "C%02d", i);
        std::string line = ProfileText(name, "NOTE CLASS", key, "");
        if (line.empty()) continue;
        auto record = NewRecord<NOTELAY>();
        line.resize(line.size() + 160);
        if (m_notes->ReadOneClass(line.data(), record.get()) != 0) read.push_back(std::move(record));
    }
    if (read.empty()) throw Failure(kNoInput, "--notes " + file + ": none of its class lines can be read.");
    for (int i = 0; i < classes.GetSize(); ++i) std::free(classes[i]);
    classes.RemoveAll();
    for (int i = 0; i < fonts.GetSize(); ++i) std::free(fonts[i]);
    fonts.RemoveAll();
    for (auto& record : read) classes.Add(record.release());
    for (int i = 0; i < classes.GetSize(); ++i) {
        const int number = classes[i]->fontNumber;
        if (m_notes->GetFontInfo(number) != nullptr) continue;
        auto font = NewRecord<NOTEFONT>();
        font->number = number;
        ReadFontLine(ProfileText(name, "FONT NAME", std::to_string(number).c_str(), "System,Standard,Hztxt,0"), *font);
        fonts.Add(font.release());
    }
    NOTELAY first = *classes[0];
    for (int i = 0; i < classes.GetSize(); ++i)
        if (classes[i]->code == '0') first = *classes[i];
    m_notes->SetDefaultRcd(&first);
}

void LibrarySession::ReadBlocks(const std::string& file) {
    std::istringstream lines(ReadWholeFile(file, 1u << 20));
    m_blockNames.assign(kCodes, {});
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        line = Trim(line);
        if (line.empty() || line[0] == '#') continue;
        const std::size_t blank = line.find_first_of(" \t");
        int code = 0;
        if (blank == std::string::npos || !ReadWhole(line.substr(0, blank), code) || code < 1 || code >= kCodes)
            throw Failure(kUsage,
                          file + ":" + std::to_string(number) + ": a line is CODE NAME, such as \"57 MONUMENT\".");
        int lost = 0;
        m_blockNames[static_cast<std::size_t>(code)] = ToLibraryText(Trim(line.substr(blank)), '_', lost);
    }
    m_blockTable.assign(kCodes, nullptr);
    for (std::size_t i = 0; i < m_blockNames.size(); ++i)
        if (!m_blockNames[i].empty()) m_blockTable[i] = m_blockNames[i].c_str();
    SetSymbolBlockTable(m_blockTable.data());
}

SymbolKind KindOfSymbol(int code) {
    if (code < 1 || code >= kCodes || getsymbody(code) == 0) return {};
    SymbolKind kind;
    kind.status = TheHeadStatus();
    const bool untouched = kind.status == SymbolStatusL && TheHeadNumber() == 0 && TheHeadPosition() == 0;
    kind.known = !untouched || Get_Symbol_Note(code)[0] != '\0';
    return kind;
}

}  // namespace zm::tool
