// References to blocks, and the decision whether a block file has to be copied first.
#include <cstdlib>
#include <cstring>
#include <string>

#include "dwg/block_copy.h"
#include "dwg/degrees.h"
#include "dwg/entity.h"
#include "dwg/texts.h"
#include "dwg/trace.h"
#include "dwg/writer.h"
#include "runtime/numbers.h"
#include "runtime/project.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

constexpr double kZScale = 2.0;  // Required: a fixed value of the design

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

// The block's number; -1, with a message, where it cannot be had. A file is copied once in a drawing.
int BlockNumber(Session& session, const char* name) {
    SourceFile source(FileOwner(_LFOpen((std::string(name) + ".dwg").c_str(), "rb+")));
    if (!source.opened()) {
        _LMsg(texts::kNoBlockFile, nullptr, 0);
        return -1;
    }
    RememberTail(source);
    const int found = FindBlock(session, name);
    if (found >= 0) return found;
    const int number = session.tables().Count(Table::block);
    const CopyFault fault = CopyBlockFile(session, source, name);
    if (fault.reason == nullptr) return number;
    const std::string text =
        fault.limit ? numbers::Text(texts::kBlockLimit, name, fault.reason)
                    : numbers::Text(texts::kBlockFault, name, static_cast<unsigned long>(fault.offset), fault.reason);
    _LMsg(text.c_str(), nullptr, 0);
    return -1;
}

}  // namespace
}  // namespace zm::dwg

using namespace zm::dwg;  // the functions of dwg/writer.h stand outside every namespace

void _LDBinsert(double x, double y, double xScale, double yScale, double angle, const char* name) {
    State& state = zm::dwg::state();
    if (state.trace != nullptr) [[unlikely]]
        return state.trace->Insert(x, y, xScale, yScale, angle, name);
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x, y, xScale, yScale, angle))) return;
    if (name == nullptr) name = "";
    if (std::strlen(name) >= kNameSize) return TellOnce(Limit::blockName);
    const int number = BlockNumber(*session, name);
    if (number < 0 || !session->Fits(kInsert.length)) return;
    RecordWriter record(session->Begin(kInsert, kInsert.length, state.now.layer), kInsert.length, kEntityHeaderSize);
    record.u16(8, static_cast<unsigned>(number)).f64(10, x).f64(18, y).f64(26, xScale).f64(34, yScale);
    record.f64(42, InsertRadians(angle)).f64(50, kZScale);
}
