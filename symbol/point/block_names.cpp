#include "symbol/point/block_names.h"

#include <algorithm>
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

// A square about the symbol: all that a clip polygon could cut off crosses a side or a diagonal of it.
bool BlockIsWhole(double x, double y, int code) {
    const double* reach = state().blockReach;
    if (reach == nullptr || TqDC->GetDoCut() == 0) return true;
    const double r = reach[code] * ScaleDenominator();
    const double ends[][4] = {{-r, -r, r, -r}, {r, -r, r, r},  {r, r, -r, r},
                              {-r, r, -r, -r}, {-r, -r, r, r}, {-r, r, r, -r}};
    for (const double(&end)[4] : ends) {
        const double wanted[] = {x + end[0], y + end[1], x + end[2], y + end[3]};
        double cut[] = {wanted[0], wanted[1], wanted[2], wanted[3]};
        if (TqDC->cutline(cut[0], cut[1], cut[2], cut[3]) == 0 || !std::equal(cut, cut + 4, wanted)) return false;
    }
    return true;
}

void SetSymbolBlockReach(const double* reach) {
    state().blockReach = reach;
}

}  // namespace zm::symbol

void SetSymbolBlockTable(const char* const* table) {
    zm::symbol::state().blockTable = table;
}
