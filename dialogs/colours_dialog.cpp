// The palette: the colours 1 to 9 by their parts, and a sample.
#include <string>

#include "config/state.h"
#include "dialogs/cells.h"
#include "dialogs/settings.h"
#include "dialogs/texts.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/config.h"
#include "zenromath/runtime.h"

namespace zm::dialogs {
namespace {

using namespace colours;

constexpr int kLowest = 0;
constexpr int kHighest = 255;
constexpr int kEdits[3] = {kRed, kGreen, kBlue};
constexpr Sample kSample = {{128, 20, 156 - 128, 60 - 20}, 116, 0};

unsigned long Colour(const int (&parts)[3]) {
    return static_cast<unsigned long>(parts[0]) + 256ul * static_cast<unsigned long>(parts[1]) +
           65536ul * static_cast<unsigned long>(parts[2]);
}

std::string Row(int number, const int (&parts)[3]) {
    return numbers::Text("[ %d ]\t%d\t%d\t%d", number, parts[0], parts[1], parts[2]);
}

void PartsOfRow(std::string_view row, int (&parts)[3]) {
    TakeCell(row, '\t');
    for (int& part : parts) part = scan::LeadingInt(TakeCell(row, '\t'));
}

// True for a whole number and nothing else; blanks may stand around it.
bool IsWholeNumber(const std::string& text, int& value) {
    scan::Fields fields(text);
    if (text.size() > 10 || !fields.Int(value)) return false;
    fields.SkipSpace();
    return fields.rest().empty();
}

}  // namespace

ColoursDialog::ColoursDialog() : Dialog(kColoursTemplate), m_sample(kSample) {}

void ColoursDialog::Open() {
    Rows& rows = field(kTable).rows;
    rows.Clear();
    for (int i = 1; i < config::kColorCount; ++i) {
        const unsigned long colour = config::state().palette[i];
        const auto part = [&](int shift) { return static_cast<int>(colour >> shift & 0xFF); };
        rows.Add(Row(i, {part(0), part(8), part(16)}));
    }
    rows.selected = 0;
    ShowRow();
}

void ColoursDialog::RowClicked(int id) {
    if (id == kTable && field(kTable).rows.selected != Rows::kNone) ShowRow();
}

// Copies the selected row to the edits and paints its colour.
void ColoursDialog::ShowRow() {
    const Rows& rows = field(kTable).rows;
    PartsOfRow(rows.at(rows.selected), m_parts);
    for (int i = 0; i < 3; ++i) field(kEdits[i]).text = numbers::Text("%d", m_parts[i]);
    m_sample.colour = static_cast<COLORREF>(Colour(m_parts));
}

void ColoursDialog::Pressed(int id) {
    if (id == kTry && Exchange()) TakeRow();
    if (id == kOkButton && Exchange()) {
        Store();
        result = IDOK;
    }
    if (id == kCancelButton) result = IDCANCEL;
}

bool ColoursDialog::Exchange() {
    int parts[3] = {};
    for (int i = 0; i < 3; ++i)
        if (!Number(kEdits[i], parts[i])) return false;
    std::copy(std::begin(parts), std::end(parts), std::begin(m_parts));
    return true;
}

// The number of an edit; false after a message where it is none or out of range, with the keyboard back in the edit.
bool ColoursDialog::Number(int id, int& value) {
    const bool isNumber = IsWholeNumber(field(id).text, value);
    if (isNumber && value >= kLowest && value <= kHighest) return true;
    focus = id;
    AfxMessageBox2(
        isNumber ? numbers::Text(texts::kNeedNumberBetween.gbk, kLowest, kHighest).c_str() : texts::kNeedNumber.gbk,
        MB_OK, 0);
    return false;
}

void ColoursDialog::TakeRow() {
    Rows& rows = field(kTable).rows;
    rows.Put(rows.selected, Row(rows.selected + 1, m_parts));
    m_sample.colour = static_cast<COLORREF>(Colour(m_parts));
}

void ColoursDialog::Store() {
    const Rows& rows = field(kTable).rows;
    for (int row = 0; row < rows.count() && row + 1 < config::kColorCount; ++row) {
        int parts[3] = {};
        PartsOfRow(rows.at(row), parts);
        config::state().palette[row + 1] = Colour(parts);
    }
    WriteColorSetting();
}

}  // namespace zm::dialogs
