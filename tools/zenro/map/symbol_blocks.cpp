#include "tools/zenro/map/symbol_blocks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/codes.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/map/symbol_extent.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr int kDwg = 1;
constexpr int kByBlock = 0, kStartColour = 7;
constexpr double kBlockScale = 1000.0;  // at which a reference has the scale 1
constexpr double kStage = 1000.0;       // ground metres around a symbol; none is as large
constexpr std::size_t kLongestName = 31;
constexpr double kRounded = 0.1;  // millimetres

// One symbol at the origin as a drawing of its own.
void DrawBlockFile(const fs::path& file, int code) {
    const std::string path = LibraryPath(file);
    std::vector<char> text(path.c_str(), path.c_str() + path.size() + 1);
    dwg::ResetAttributes();
    _LDBopendwg(text.data());
    dwg::SetRingsClosed(true);  // as on the sheet
    _LDBsetcolor(kByBlock);
    {
        CTqDraw context(kDwg);
        context.SetViewDrawDC(nullptr, 1.0, -kStage, -kStage, 2000, 2000, 0);
        insert(0.0, 0.0, 0.0, code);
    }
    SelectWorkingTqDC(nullptr);
    _LDBclosedwg();
    _LDBsetcolor(kStartColour);
    if (!dwg::LastFileComplete())
        throw Failure(kNoOutput,
                      Phrase("{0}: a block of a symbol cannot be written; is the disk full?", file.string()));
}

// Metres of paper from the anchor of a symbol to the farthest corner of its box, and what the box is rounded by.
double ReachOf(const Box& box) {
    if (box.empty()) return 0.0;
    const double x = std::max(-box.x1, box.x2), y = std::max(-box.y1, box.y2);
    return (std::hypot(x, y) + kRounded) / 1000.0;
}

bool IsNameByte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '$';
}

}  // namespace

std::string SymbolBlockName(int code, const std::string& note) {
    std::string name = "S" + std::to_string(1000 + code).substr(1);
    if (note.empty()) return name;
    name += '_';
    for (std::size_t i = 0; i < note.size();) {
        const bool wide = (note[i] & 0x80) != 0 && i + 1 < note.size();
        const std::size_t size = wide ? 2 : 1;
        if (name.size() + size > kLongestName) break;
        name += wide ? note.substr(i, 2) : std::string(1, IsNameByte(note[i]) ? note[i] : '_');
        i += size;
    }
    return name;
}

SymbolBlocks::SymbolBlocks() : m_names(kCodes), m_table(kCodes, nullptr), m_reach(kCodes, 0.0) {
    MeasureSymbols();
    const double scale = getcurgscale();
    setgscale(kBlockScale);
    SelectWorkingTqDC(nullptr);
    for (int code = 1; code < kCodes; ++code) {
        const SymbolKind kind = KindOfSymbol(code);
        if (!kind.known || kind.status != SymbolStatusG) continue;
        std::string& name = m_names[static_cast<std::size_t>(code)];
        name = SymbolBlockName(code, Get_Symbol_Note(code));
        m_reach[static_cast<std::size_t>(code)] = ReachOf(ExtentOfSymbol(code));
        DrawBlockFile(FromLibraryPath((LibraryPath(m_folder.path()) + "\\" + name + ".dwg").c_str()), code);
    }
    setgscale(scale);
    for (std::size_t i = 0; i < m_names.size(); ++i)
        if (!m_names[i].empty()) m_table[i] = m_names[i].c_str();
    dwg::SetBlockImport(true);
    dwg::SetBlockFolder(LibraryPath(m_folder.path()).c_str());
    SetSymbolBlockTable(m_table.data());
    symbol::SetSymbolBlockReach(m_reach.data());
}

SymbolBlocks::~SymbolBlocks() {
    dwg::SetBlockFolder(nullptr);
    SetSymbolBlockTable(nullptr);
    symbol::SetSymbolBlockReach(nullptr);
}

}  // namespace zm::tool
