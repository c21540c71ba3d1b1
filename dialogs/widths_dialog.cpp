// Pen widths by feature code, and the width of all other codes.
#include <cstring>
#include <string>

#include "config/pens.h"
#include "config/state.h"
#include "dialogs/cells.h"
#include "dialogs/settings.h"
#include "dialogs/texts.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/runtime.h"

namespace zm::dialogs {
namespace {

using namespace widths;

constexpr unsigned int kWidest = 254;  // 0.01 mm
constexpr int kHighestCode = 1000;     // Required: accepted by the test though the table ends at 999.

int CodeOf(const std::string& row) {
    return scan::LeadingInt(row);
}

std::uint8_t WidthOf(const std::string& row) {
    std::string_view rest = row;
    TakeCell(rest, '\t');
    return static_cast<std::uint8_t>(scan::LeadingInt(rest));
}

int RowOfCode(const Rows& rows, int code) {
    for (int row = 0; row < rows.count(); ++row)
        if (CodeOf(rows.at(row)) == code) return row;
    return Rows::kNone;
}

}  // namespace

void WidthsDialog::Open() {
    const std::uint8_t* table = config::ReadPenWidth();
    Rows& rows = field(kTable).rows;
    rows.Clear();
    for (const int edit : {kDefault, kCode, kWidth}) field(edit).text.clear();
    if (table == nullptr) return;
    field(kDefault).text = numbers::Text("%d", table[0]);
    for (int code = 1; code < config::kPenCodes; ++code)
        if (table[code] < config::kNoWidth) rows.Add(numbers::Text("%03d\t%d", code, table[code]));
}

void WidthsDialog::Pressed(int id) {
    Rows& rows = field(kTable).rows;
    if (id == kAdd) Add();
    if (id == kDelete) rows.Delete(rows.focused);
    if (id == kOkButton || id == kCancelButton) result = id;
}

void WidthsDialog::Add() {
    const std::string& typedCode = field(kCode).text;
    const std::string& typedWidth = field(kWidth).text;
    const int code = scan::LeadingInt(typedCode);
    const auto width = static_cast<unsigned int>(scan::LeadingInt(typedWidth));  // below 0 is too wide as well
    if (typedCode.empty() || typedWidth.empty() || code < 1 || code > kHighestCode || width > kWidest) {
        AfxMessageBox2(texts::kCodeOrWidthWrong.gbk, MB_OK, 0);
        return;
    }
    Rows& rows = field(kTable).rows;
    int row = RowOfCode(rows, code);
    if (row != Rows::kNone) {
        std::string_view cells = rows.at(row);
        const std::string shownCode(TakeCell(cells, '\t'));
        rows.Put(row, shownCode + '\t' + typedWidth);
    } else {
        rows.Add(typedCode + '\t' + typedWidth);
        row = rows.selected = rows.count() - 1;
    }
    rows.reveal = row;
}

void WidthsDialog::AfterClose() {
    std::uint8_t* table = config::state().penWidths;
    if (result != IDOK) return;
    if (table == nullptr) {
        _LMsg("The pen width table was freed while the dialog was open: the pen widths are not saved.", nullptr, 0);
        return;
    }
    std::memset(table, config::kNoWidth, config::kPenCodes);
    table[0] = static_cast<std::uint8_t>(scan::LeadingInt(field(kDefault).text));
    const Rows& rows = field(kTable).rows;
    for (int row = 0; row < rows.count(); ++row) {
        const int code = CodeOf(rows.at(row));
        if (code >= 1 && code < config::kPenCodes) table[code] = WidthOf(rows.at(row));
    }
    config::WritePenWidth();
}

}  // namespace zm::dialogs
