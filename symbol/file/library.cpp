// The tables of the symbol library and the lookup by code.
#include "symbol/file/library.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"

namespace zm::symbol {

Library::Library() {
    heads.fill({SymbolStatusL, 0, 0});
    body.reserve(kBodyRecords);
    lineClasses.reserve(kLineClasses);
}

void Library::CountBodies() {
    const int total = static_cast<int>(body.size());
    for (std::size_t code = 0; code < heads.size(); ++code) {
        const SymbolHead& head = heads[code];
        if (head.status != SymbolStatusG && head.status != SymbolStatusH) continue;
        int at = head.position;
        for (int left = head.number; left > 0 && at < total; ++at)
            if (CountsAsTerminator(body[static_cast<std::size_t>(at)])) --left;
        bodySizes[code] = at - head.position;
    }
    segmentsFrom.assign(body.size(), 0);
    for (std::size_t at = body.size(); at-- > 0;) {
        const std::size_t next = at + kSegmentRecords;
        if (next <= body.size() && IsPlainSegment(&body[at]))
            segmentsFrom[at] = 1 + (next < body.size() ? segmentsFrom[next] : 0);
    }
}

SYMBODY PointRecord(float x, float y) {
    SYMBODY record;
    record.point = {x, y};
    return record;
}

SYMBODY RawRecord(int first, int second) {
    SYMBODY record;
    record.raw = {first, second};
    return record;
}

bool CountsAsTerminator(const SYMBODY& record) {
    constexpr double kBelow = 0.0001;
    // Required: one-sided, so that an arc marker with a sweep of -100 degrees or less counts; nBody depends on it.
    return record.point.x - double{kTerminator} < kBelow && record.point.y - double{kTerminator} < kBelow;
}

Body CurrentBody() {
    const std::shared_ptr<Library>& library = state().library;
    Body body{TheBody, TheBody != nullptr ? nBody : 0, library, library != nullptr ? library->drawn : nullptr};
    // An application that writes a larger nBody gets no records that are not there.
    if (body.owner != nullptr && body.records == body.owner->data())
        body.size = std::min(body.size, static_cast<int>(body.owner->size()));
    return body;
}

void Library::CopyBody(int code) {
    if (drawn == nullptr || drawn.use_count() > 1) drawn = std::make_shared<std::vector<SYMBODY>>();
    const int size = bodySizes[static_cast<std::size_t>(code)];
    // The leading record of a hatch is there also where no entry follows, and nBody does not count it then.
    const auto first = body.begin() + std::min<std::ptrdiff_t>(current.position, std::ssize(body));
    const auto last = body.begin() + std::min<std::ptrdiff_t>(current.position + std::max(size, 1), std::ssize(body));
    drawn->reserve(1);  // never null
    drawn->assign(first, last);
    TheBody = drawn->data();
    nBody = size;
}

bool Library::IsAsLoaded(const SYMBODY* records, int size) const {
    return drawn != nullptr && records == drawn->data() && size >= 0 &&
           static_cast<std::size_t>(size) <= drawn->size() &&
           std::memcmp(records, body.data() + current.position, static_cast<std::size_t>(size) * sizeof(SYMBODY)) == 0;
}

}  // namespace zm::symbol

using zm::symbol::kLastCode;
using zm::symbol::state;

void TsymbolClose() {
    state().library.reset();
}

int IsTsymboled() {
    return state().library != nullptr ? 1 : 0;
}

int getsymbody(int code) {
    zm::symbol::Library* library = state().library.get();
    if (code < 1 || library == nullptr) return 0;
    if (code == state().lastCode) return 1;
    state().lastCode = code;
    // Required: a code above 999 uses the head of 999.
    const int known = std::min(code, kLastCode);
    library->current = library->heads[static_cast<std::size_t>(known)];
    switch (library->current.status) {
        case SymbolStatusG:
        case SymbolStatusH:
            library->CopyBody(known);
            return 1;
        case SymbolStatusLC:
            TheLCBody = library->lineClasses[static_cast<std::size_t>(library->current.position)];
            return 1;
        case SymbolStatusL:
            library->lineStyle = library->current.number % 7;
            return 1;
        case SymbolStatusE:
        case SymbolStatusY:
            return 1;
        default:
            return _LMsg(zm::symbol::texts::kUnknownStatus, nullptr, 0);
    }
}

int TheHeadStatus() {
    return IsTsymboled() != 0 ? state().library->current.status : 0;
}
int TheHeadPosition() {
    return IsTsymboled() != 0 ? state().library->current.position : 0;
}
int TheHeadNumber() {
    return IsTsymboled() != 0 ? state().library->current.number : 0;
}

double Get_G_Size(int code) {
    if (code < 1 || code > kLastCode || IsTsymboled() == 0) return 0.0;
    return state().library->sizes[static_cast<std::size_t>(code)];
}

const char* Get_Symbol_Note(int code) {
    if (code < 1 || code > kLastCode || IsTsymboled() == 0) return "null";
    return state().library->notes[static_cast<std::size_t>(code)].c_str();
}
