#include "tools/zenro/map/library_session.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "runtime/text/gbk.h"
#include "symbol/line/pattern_limits.h"
#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/codes.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr char kDefaultProject[] = "project.ini";

// A file that the user named: there, readable, and with a name that the library can take.
std::string NamedFile(const std::string& option, const std::string& file) {
    std::error_code error;
    const fs::path path = fs::absolute(PathOf(file), error);
    if (!fs::is_regular_file(path, error)) throw Failure(kNoInput, Phrase("{0} {1}: no such file.", option, file));
    std::FILE* probe = OpenFile(path, "rb");
    if (probe == nullptr)
        throw Failure(kNoInput, Phrase("{0} {1}: cannot be opened; check its permissions.", option, file));
    std::fclose(probe);
    std::string name = LibraryPath(path);
    if (name.empty())
        throw Failure(kNoInput, Phrase("{0} {1}: the path is longer than 255 bytes; use a shorter one.", option, file));
    return name;
}

// The palette at load has the pure colours of a screen, and yellow cannot be read on paper. Where the user has set none
// of his own, these are taken: black, red, green, blue, ochre, purple, light blue, grey, brown; green, blue and brown as
// the colours of vegetation, water and relief are printed.
void UsePaperColours() {
    static constexpr unsigned long kScreen[10] = {0x000000, 0x000000, 0x0000FF, 0x00FF00, 0xFF0000,
                                                  0x00FFFF, 0xFF00FF, 0xFFFF00, 0x008080, 0x5C5CC0};
    static constexpr unsigned long kPaper[10] = {0x000000, 0x000000, 0x2020B4, 0x409600, 0xE39F00,
                                                 0x14509C, 0x8C1E78, 0xC89650, 0x707070, 0x006BB3};
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    if (palette == nullptr || count != 10 || !std::equal(kScreen, kScreen + 10, palette)) return;
    std::copy(kPaper, kPaper + 10, palette);
}

}  // namespace

std::string ModuleDirectory() {
    return FromLibraryPath(_LFModDir()).string();
}

LibrarySession::LibrarySession(const LibraryOptions& options, ToolHost& host) {
    NameProject(options.project);
    ReloadLayers();
    m_notes = OpenNotes(options.notes, host);
    const std::string symbols = options.symbols.empty() ? std::string() : NamedFile("--symbols", options.symbols);
    if (!symbols.empty() && !IsSymbolLibrary(options.symbols))
        throw Failure(kNoInput, Phrase("--symbols {0}: is no symbol library; it has no line such as \"*12 G\".",
                                       options.symbols));
    TsymbolInit(symbols.empty() ? nullptr : symbols.c_str());
    dwg::SetBlockImport(!options.blocksAsCopied);
    if (!options.blocks.empty()) ReadBlocks(options.blocks);
    if (options.symbolsAs == "blocks") m_symbolBlocks = std::make_unique<SymbolBlocks>();
}

LibrarySession::~LibrarySession() {
    m_symbolBlocks.reset();
    dwg::SetBlockFolder(nullptr);
    SetSymbolBlockTable(nullptr);
    if (IsTsymboled() != 0) TsymbolClose();
    SelectWorkingTqDC(nullptr);
    m_notes.reset();
    DeleteCengCi8Dlg();
}

void LibrarySession::ReloadLayers() {
    ReadLayers();
}

void ReadLayers() {
    ReadCengCi();
    UsePaperColours();
}

void NameProject(const std::string& project) {
    std::error_code error;
    const fs::path here = fs::current_path(error);
    std::string name =
        project.empty() ? LibraryPath(PathOf(ModuleDirectory()) / kDefaultProject) : NamedFile("--project", project);
    if (name.empty()) return;  // the library then works with its one default layer
    std::vector<char> text(name.c_str(), name.c_str() + name.size() + 1);
    char extension[] = ".ini";
    _LFInit(text.data(), extension, nullptr);
    // The library moves the process to the project; the paths of the command line are meant from where it was called.
    fs::current_path(here, error);
}

std::unique_ptr<TqNoteLayBase> OpenNotes(const std::string& file, ToolHost& host) {
    const long before = host.messages();
    auto notes = file.empty() ? std::make_unique<TqNoteLayBase>()
                              : std::make_unique<TqNoteLayBase>(NamedFile("--notes", file).c_str());
    if (GetTqNoteLayBasePt() != nullptr) return notes;
    const std::string message =
        host.messages() > before ? Phrase("; the library reports: {0}", host.lastMessage()) : "";
    if (!file.empty())
        throw Failure(kNoInput, Phrase("--notes {0}: no note class with a font can be read{1}. A file of note classes "
                                       "has a section [NOTE CLASS] with TOTAL and C01, C02 ...",
                                       file, message));
    throw Failure(
        kNoInput,
        Phrase("note classes: Orvnote.cod with classes and fonts is needed in {0}{1}. Install the data files again.",
               ModuleDirectory(), message));
}

void LibrarySession::ReadBlocks(const std::string& file) {
    std::istringstream lines(ReadWholeFile(PathOf(file), 1u << 20));
    m_blockNames.assign(kCodes, {});
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        line = Trim(line);
        if (line.empty() || line[0] == '#') continue;
        const std::size_t blank = line.find_first_of(" \t");
        int code = 0;
        if (blank == std::string::npos || !ReadWhole(line.substr(0, blank), code) || code < 1 || code >= kCodes)
            throw Failure(kUsage, Phrase("{0}:{1}: a line is CODE NAME, such as \"57 MONUMENT\".", file, number));
        int lost = 0;
        m_blockNames[static_cast<std::size_t>(code)] = ToLibraryText(Trim(line.substr(blank)), '_', lost);
    }
    m_blockTable.assign(kCodes, nullptr);
    for (std::size_t i = 0; i < m_blockNames.size(); ++i)
        if (!m_blockNames[i].empty()) m_blockTable[i] = m_blockNames[i].c_str();
    SetSymbolBlockTable(m_blockTable.data());
    std::error_code error;
    dwg::SetBlockFolder(LibraryPath(fs::absolute(PathOf(file), error).parent_path()).c_str());
}

SymbolKind KindOfSymbol(int code) {
    if (code < 1 || code >= kCodes || getsymbody(code) == 0) return {};
    SymbolKind kind;
    kind.status = TheHeadStatus();
    const bool untouched = kind.status == SymbolStatusL && TheHeadNumber() == 0 && TheHeadPosition() == 0;
    kind.known = !untouched || Get_Symbol_Note(code)[0] != '\0';
    return kind;
}

double CycleOfSymbol(int code) {
    const bool isPattern = code > 0 && code < kCodes && getsymbody(code) != 0 && TheHeadStatus() == SymbolStatusLC &&
                           !(TheLCBody.value[19] > zm::symbol::kVertexMode);
    double cycle = 0.0;
    for (int i = 0; isPattern && i < TheHeadNumber(); ++i)
        if (TheLCBody.code[i] == '+' || TheLCBody.code[i] == '-') cycle += TheLCBody.value[i];
    return cycle;
}

std::string NoteOfSymbol(int code) {
    return code > 0 && code < kCodes ? Trim(gbk::ToUtf8(Get_Symbol_Note(code))) : std::string();
}

}  // namespace zm::tool
