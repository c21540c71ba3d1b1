#include "symbol/blocks.h"

#include <cstring>

#include "symbol/paper.h"
#include "symbol/state.h"

namespace zm::symbol {
namespace {

constexpr std::size_t kScaleMark = 11;  // index of the character of entry 0 that decides the scale

}  // namespace

const char* BlockName(int code) {
    const char* const* table = state().blockTable;
    if (table == nullptr || code < 1 || code > kLastCode) return nullptr;
    const char* name = table[code];
    return name != nullptr && *name != '\0' ? name : nullptr;
}

// Required: the twelfth character of entry 0 decides; a text that ends before it counts as one that ends there.
double BlockScale() {
    const char* first = state().blockTable[0];
    const bool longText = first != nullptr && std::strlen(first) > kScaleMark;
    return longText ? 1.0 : ScaleDenominator() / 1000.0;
}

}  // namespace zm::symbol

void SetSymbolBlockTable(const char* const* table) {
    zm::symbol::state().blockTable = table;
}
