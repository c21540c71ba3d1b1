// Line coordinate text: two-point lines of hachures in a file.
#include <string>

#include "runtime/text/numbers.h"
#include "symbol/state.h"
#include "zenromath/symbol.h"

int AppendLineCor(double x1, double y1, double x2, double y2, int& no, int group, FILE* f) {
    auto& state = zm::symbol::state();
    if (group < 0) {
        state.lineOffsetX = x1;
        state.lineOffsetY = y1;
        return 0;
    }
    if (f == nullptr) return 0;
    const auto point = [&](double x, double y) {
        return zm::numbers::Text("%d %.3lf %.3lf 9999.0 \n", no++, state.lineOffsetX + x, state.lineOffsetY + y);
    };
    std::string record = zm::numbers::Text("%3d 2 1\n", group);
    record += point(x1, y1);
    record += point(x2, y2);
    std::fwrite(record.data(), 1, record.size(), f);
    return no;
}
