// Note classes: one line each, ten fields.
#include <array>
#include <string>

#include "config/not_saved.h"
#include "dialogs/cells.h"
#include "dialogs/settings.h"
#include "dialogs/texts.h"
#include "runtime/profile/profile.h"
#include "runtime/text/fixed_text.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::dialogs {
namespace {

using namespace classes;

constexpr char kSection[] = "NOTE CLASS";
constexpr int kKeyWidth = 2;
constexpr int kLinesSaved = 100;  // Required: the hundredth is written, and never read back.
constexpr int kMemo = kFields - 1;
constexpr int kLayerName = 1;
constexpr std::size_t kFieldBytes = 8;
constexpr std::size_t kMemoBytes = 39;
constexpr unsigned char kFirstAllowed = 33;
constexpr unsigned char kLastAllowed = 125;

constexpr texts::Text kHints[kFields] = {texts::kClassHint,        texts::kClassLayerHint,  texts::kColourHint,
                                         texts::kDisplayHint,      texts::kCharHeightHint,  texts::kCharWidthHint,
                                         texts::kCharIntervalHint, texts::kFontOfClassHint, texts::kConvertHint,
                                         texts::kMemoHint};

using Fields = std::array<std::string, kFields>;

std::string Row(char code, const std::string& layer, const int (&numbers)[7], const std::string& memo) {
    return numbers::Text("%c,%8s,%4d,%4d,%4d,%4d,%4d,%4d,%4d, %s", code, layer.c_str(), numbers[0], numbers[1],
                         numbers[2], numbers[3], numbers[4], numbers[5], numbers[6], memo.c_str());
}

std::string Row(const NOTELAY& r) {
    return Row(r.code, std::string(runtime::FieldText(r.layerName)),
               {r.color, r.display, r.height, r.width, r.interval, r.fontNumber, r.convert},
               std::string(runtime::FieldText(r.memo)));
}

std::string Row(const Fields& fields) {
    int numbers[7] = {};
    for (std::size_t i = 0; i < 7; ++i) numbers[i] = scan::LeadingInt(fields[i + 2]);
    return Row(fields[0].front(), fields[kLayerName], numbers, fields[kMemo]);
}

// The class character may be a comma itself, and the memo may hold some.
Fields Split(std::string_view row) {
    Fields fields;
    fields[0] = row.substr(0, 1);
    row.remove_prefix(std::min<std::size_t>(2, row.size()));
    for (std::size_t i = 1; i < kMemo; ++i) fields[i] = Trimmed(TakeCell(row, ','));
    fields[kMemo] = Trimmed(row);
    return fields;
}

bool IsAllowed(std::size_t place, const std::string& text) {
    if (place == kMemo) return true;
    if (text.empty()) return false;
    const auto first = static_cast<unsigned char>(text.front());
    return place == kLayerName || (first >= kFirstAllowed && first <= kLastAllowed);
}

int RowOfClass(const Rows& rows, char code) {
    for (int row = 0; row < rows.count(); ++row)
        if (rows.at(row).starts_with(code)) return row;
    return Rows::kNone;
}

}  // namespace

void ClassesDialog::Open() {
    Rows& rows = field(kList).rows;
    rows.Clear();
    const TqNoteLayBase::ClassList& table = *m_notes.GetNLayTbl();
    for (int i = 0; i < table.GetSize(); ++i) rows.Add(Row(*table.GetAt(i)));
    for (int i = 0; i < kFields; ++i) field(kFirstEdit + i).text.clear();
}

void ClassesDialog::RowChanged(int id) {
    const Rows& rows = field(kList).rows;
    if (id != kList || rows.selected == Rows::kNone) return;
    CurrentHost().Beep();
    const Fields fields = Split(rows.at(rows.selected));
    for (int i = 0; i < kFields; ++i) field(kFirstEdit + i).text = fields[static_cast<std::size_t>(i)];
}

void ClassesDialog::Pressed(int id) {
    Rows& rows = field(kList).rows;
    if (id >= kFirstHint && id < kFirstHint + kFields) _LMsg(kHints[id - kFirstHint].gbk, nullptr, 0);
    if (id == kUpdate) Update();
    if (id == kDelete) rows.Delete(rows.selected);
    // Required: closing saves, in whatever way the dialog is closed; there is no cancel.
    if (id == kOkButton && Save()) result = IDOK;
    if (id == kCancelButton) result = Save() ? IDOK : IDCANCEL;  // nobody is kept in a dialog that cannot save
}

void ClassesDialog::Update() {
    Fields fields;
    for (std::size_t i = 0; i < kFields; ++i) {
        fields[i] = ReadEdit(field(kFirstEdit + static_cast<int>(i)).text, i == kMemo ? kMemoBytes : kFieldBytes);
        if (IsAllowed(i, fields[i])) continue;
        _LMsg(texts::kNotAllowed.gbk, nullptr, 0);
        return;
    }
    Rows& rows = field(kList).rows;
    int row = RowOfClass(rows, fields[0].front());
    if (row == Rows::kNone) {
        rows.Add(Row(fields));
        row = rows.count() - 1;
    } else {
        rows.Put(row, Row(fields));
    }
    rows.selected = rows.reveal = row;
}

// Required: the lines go to the file as they stand in the list, padded.
bool ClassesDialog::Save() {
    const Rows& rows = field(kList).rows;
    profile::Batch file;
    m_notes.WriteOneRcd(kSection, "TOTAL", numbers::Text("%d", rows.count()).c_str());
    for (int row = 0; row < rows.count() && row < kLinesSaved; ++row)
        m_notes.WriteOneRcd(kSection, numbers::Text("C%0*d", kKeyWidth, row + 1).c_str(), rows.at(row).c_str());
    if (!file.Commit()) return config::SayNotSaved(m_notes.GetFile(), "the note classes are");
    m_notes.ReadNoteClassInfo();
    return true;
}

}  // namespace zm::dialogs
