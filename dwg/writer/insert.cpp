// References to blocks, and the decision whether a block file has to be copied first.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "dwg/block/block_copy.h"
#include "dwg/format/degrees.h"
#include "dwg/import/block_import.h"
#include "dwg/texts.h"
#include "dwg/writer/entity.h"
#include "dwg/writer/writer.h"
#include "runtime/files/files.h"
#include "runtime/profile/project.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

constexpr double kZScale = 2.0;  // Required: a fixed value of the design. Of imported blocks heights scale as the rest.

// How many bytes the records of a file have at their end that the output lacks, by its version digits.
void RememberTail(SourceFile& source) {
    char digits[5] = {};
    const int version = source.Read(2, digits, 4) ? std::atoi(digits) : 0;
    if (version >= 1009)
        state().blockTail = 2;
    else if (version >= 1006)
        state().blockTail = 0;
}

// The first block of this name, compared exactly over the whole field; -1 if there is none.
int FindBlock(Session& session, const char* name) {
    char field[kNameSize] = {};
    std::memcpy(field, name, std::strlen(name));
    const int count = session.tables().Count(Table::block);
    for (int slot = 0; slot < count; ++slot)
        if (std::memcmp(session.tables().Slot(Table::block, slot) + 1, field, kNameSize) == 0) return slot;
    return -1;
}

// Of the folder that the application named, else by the search for files of the family.
FileOwner OpenBlockFile(const std::string& name) {
    const std::string folder(state().blockFolder.begin(), state().blockFolder.end());
    if (!folder.empty())
        if (std::FILE* file = files::Open((folder + name).c_str(), "rb")) return FileOwner(file);
    FileOwner file(_LFOpen(name.c_str(), "rb+"));
    if (file == nullptr) _LMsg(texts::kNoBlockFile, nullptr, 0);
    return file;
}

// All bytes of a file that a block can come from; more than the largest are not read.
std::vector<std::uint8_t> ReadBlockFile(std::FILE* file) {
    constexpr std::size_t kLargest = std::size_t{1} << 26, kPiece = std::size_t{1} << 16;
    std::vector<std::uint8_t> bytes;
    std::size_t got = kPiece;
    while (got == kPiece && bytes.size() < kLargest) {
        const std::size_t had = bytes.size();
        bytes.resize(had + kPiece);
        got = std::fread(bytes.data() + had, 1, kPiece, file);
        bytes.resize(had + got);
    }
    return bytes;
}

// What a reference shows has no paper space, and the drawing no extended data: they stay away, but not unsaid.
void NoteLeftOut(const char* name, const ImportFault& left) {
    std::string what;
    if (left.paperSpace > 0) what = std::to_string(left.paperSpace) + " records of paper space";
    if (left.extended > 0)
        what += (what.empty() ? "the extended data of " : " and the extended data of ") +
                std::to_string(left.extended) + " records";
    if (!what.empty()) state().importNotes.push_back(numbers::Text(texts::kImportNote, name, what.c_str()));
}

// The number of the block that an import makes; -1, with a message the first time, where it cannot be had.
int ImportedNumber(Session& session, const char* name) {
    const int found = FindBlock(session, name);
    if (found >= 0) return found;
    auto& refused = state().refusedBlocks;
    if (std::find(refused.begin(), refused.end(), name) != refused.end()) return -1;
    refused.emplace_back(name);  // unless it comes
    const FileOwner file = OpenBlockFile(std::string(name) + ".dwg");
    if (file == nullptr) return -1;
    const int number = session.tables().Count(Table::block);
    const ImportFault fault = ImportBlockFile(session, ReadBlockFile(file.get()), name);
    if (fault.reason.empty()) {
        refused.pop_back();
        NoteLeftOut(name, fault);
        return number;
    }
    const std::string text =
        fault.limit
            ? numbers::Text(texts::kBlockLimit, name, fault.reason.c_str())
            : numbers::Text(texts::kImportFault, name, static_cast<unsigned long>(fault.offset), fault.reason.c_str());
    _LMsg(text.c_str(), nullptr, 0);
    return -1;
}

// The block's number; -1, with a message, where it cannot be had. A file is copied once in a drawing.
int BlockNumber(Session& session, const char* name) {
    if (state().importBlocks) return ImportedNumber(session, name);
    SourceFile source(OpenBlockFile(std::string(name) + ".dwg"));
    if (!source.opened()) return -1;
    RememberTail(source);
    const int found = FindBlock(session, name);
    if (found >= 0) return found;
    const int number = session.tables().Count(Table::block);
    const CopyFault fault = CopyBlockFile(session, source, name);
    if (fault.reason == nullptr) return number;
    const char* form = fault.unknown ? texts::kBlockUnknown : texts::kBlockFault;
    const std::string text = fault.limit
                                 ? numbers::Text(texts::kBlockLimit, name, fault.reason)
                                 : numbers::Text(form, name, static_cast<unsigned long>(fault.offset), fault.reason);
    _LMsg(text.c_str(), nullptr, 0);
    return -1;
}

// Null outside the list.
const char* TextAt(const std::vector<std::string>& texts, int index) {
    const bool there = index >= 0 && static_cast<std::size_t>(index) < texts.size();
    return there ? texts[static_cast<std::size_t>(index)].c_str() : nullptr;
}

}  // namespace
}  // namespace zm::dwg

using namespace zm::dwg;  // the functions of dwg/writer/writer.h stand outside every namespace

void _LDBinsert(double x, double y, double xScale, double yScale, double angle, const char* name) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x, y, xScale, yScale, angle))) return;
    if (name == nullptr) name = "";
    if (std::strlen(name) >= kNameSize) return TellOnce(Limit::blockName);
    const int number = BlockNumber(*session, name);
    // Imported blocks may have strokes in the colour of the reference, copied ones have that of its layer.
    const bool coloured = state().importBlocks;
    const EntityLayout& layout = coloured ? kColouredInsert : kInsert;
    if (number < 0 || !session->Fits(layout.length)) return;
    RecordWriter record(session->Begin(layout, layout.length, state().now.layer), layout.length, kEntityHeaderSize);
    if (coloured) record.u8(8, state().now.color);
    const std::size_t at = kEntityHeaderSize + (coloured ? 1 : 0);
    record.u16(at, static_cast<unsigned>(number)).f64(at + 2, x).f64(at + 10, y).f64(at + 18, xScale);
    record.f64(at + 26, yScale).f64(at + 34, InsertRadians(angle)).f64(at + 42, coloured ? xScale : kZScale);
}

bool zm::dwg::BlockAtHand(const char* name) {
    State& state = zm::dwg::state();
    if (!state.importBlocks || std::strlen(name) >= kNameSize) return true;
    Session* session = OpenSession();
    return session == nullptr || ImportedNumber(*session, name) >= 0;
}

int zm::dwg::ImportBlock(const char* name) {
    Session* session = OpenSession();
    if (session == nullptr || name == nullptr) return -1;
    if (std::strlen(name) >= kNameSize) {
        TellOnce(Limit::blockName);
        return -1;
    }
    return ImportedNumber(*session, name);
}

void zm::dwg::SetBlockImport(bool on) {
    state().importBlocks = on;
}

void zm::dwg::SetBlockFolder(const char* folder) {
    std::string place = folder == nullptr ? "" : folder;
    if (!place.empty() && files::LastSeparator(place) != place.size() - 1) place += '/';
    state().blockFolder.assign(place.begin(), place.end());
}

const char* zm::dwg::BlockCopyWarning(int index) {
    return TextAt(state().copyWarnings, index);
}

const char* zm::dwg::BlockImportNote(int index) {
    return TextAt(state().importNotes, index);
}
