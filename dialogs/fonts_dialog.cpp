// Note fonts: number, face of the screen, text style and font name of drawings, slant.
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

using namespace fonts;

constexpr char kSection[] = "FONT NAME";
constexpr int kLinesSaved = 100;
constexpr std::size_t kFieldBytes = 19;
constexpr unsigned char kFirstAllowed = 33;
constexpr std::size_t kValueInRow = 4;  // after "%3d "
constexpr int kScreenFontEdit = kFirstEdit + 1;

using Fields = std::array<std::string, kFields>;

std::string Row(int number, const std::string& face, const std::string& style, const std::string& font,
                const std::string& slant) {
    return numbers::Text("%3d %20s,%12s,%12s,%4s", number, face.c_str(), style.c_str(), font.c_str(), slant.c_str());
}

std::string Row(const NOTEFONT& f) {
    const auto text = [](const auto& name) { return std::string(runtime::FieldText(name)); };
    return Row(f.number, text(f.screenFont), text(f.textStyle), text(f.fontName), numbers::Text("%d", f.slant));
}

Fields Split(std::string_view row) {
    Fields fields;
    row = Trimmed(row);
    fields[0] = TakeCell(row, ' ');
    for (std::size_t i = 1; i < kFields - 1; ++i) fields[i] = Trimmed(TakeCell(row, ','));
    fields[kFields - 1] = Trimmed(row);
    return fields;
}

const char* HintOf(int id) {
    switch (id - kFirstHint) {
        case 0:
            return texts::kFontNumberHint.gbk;
        case 2:
            return texts::kCadStyleHint.gbk;
        case 3:
            return texts::kCadFontHint.gbk;
        case 4:
            return texts::kSlantHint.gbk;
        default:
            return nullptr;
    }
}

int RowOfNumber(const Rows& rows, int number) {
    for (int row = 0; row < rows.count(); ++row)
        if (scan::LeadingInt(rows.at(row)) == number) return row;
    return Rows::kNone;
}

}  // namespace

void FontsDialog::Open() {
    Rows& rows = field(kList).rows;
    rows.Clear();
    const TqNoteLayBase::FontList& table = *m_notes.GetFontTbl();
    for (int i = 0; i < table.GetSize(); ++i) rows.Add(Row(*table.GetAt(i)));
    for (int i = 0; i < kFields; ++i) field(kFirstEdit + i).text.clear();
}

void FontsDialog::RowChanged(int id) {
    const Rows& rows = field(kList).rows;
    if (id != kList || rows.selected == Rows::kNone) return;
    CurrentHost().Beep();
    const Fields fields = Split(rows.at(rows.selected));
    for (int i = 0; i < kFields; ++i) field(kFirstEdit + i).text = fields[static_cast<std::size_t>(i)];
    if (const NOTEFONT* font = m_notes.GetFontInfo(scan::LeadingInt(fields[0]))) m_font = font->logFont;
}

void FontsDialog::Pressed(int id) {
    if (const char* hint = HintOf(id)) _LMsg(hint, nullptr, 0);
    if (id == kChooser) Choose();
    if (id == kUpdate) Update();
    if (id == kOkButton && Save()) result = IDOK;
    if (id == kCancelButton) result = IDCANCEL;
}

void FontsDialog::Choose() {
    LOGFONTA font = m_font;
    if (!CurrentHost().PickFont(owner, font)) return;
    m_font = font;
    field(kScreenFontEdit).text = runtime::FieldText(m_font.lfFaceName);
}

void FontsDialog::Update() {
    Fields fields;
    for (std::size_t i = 0; i < kFields; ++i) {
        fields[i] = ReadEdit(field(kFirstEdit + static_cast<int>(i)).text, kFieldBytes);
        // Bytes count without a sign, or no Chinese name could begin.
        if (!fields[i].empty() && static_cast<unsigned char>(fields[i].front()) >= kFirstAllowed) continue;
        _LMsg(texts::kNotAllowed.gbk, nullptr, 0);
        return;
    }
    const int number = scan::LeadingInt(fields[0]);
    if (m_notes.WriteLogFontInfo(number, m_font) == 0) {
        config::SayNotSaved(m_notes.GetFile(), "the font is");
        return;
    }
    if (NOTEFONT* font = m_notes.GetFontInfo(number)) font->logFont = m_font;
    Rows& rows = field(kList).rows;
    const int place = RowOfNumber(rows, number);
    rows.Delete(place);
    rows.Insert(place, Row(number, fields[1], fields[2], fields[3], fields[4]));
    rows.selected = rows.reveal = place != Rows::kNone ? place : rows.count() - 1;
}

// Required: each line is the row after its first four bytes, without a closing comma. The default text that the reader
// appends runs into the slant so, where the number ends at its first letter; a number above 999 shifts the line.
bool FontsDialog::Save() {
    const Rows& rows = field(kList).rows;
    profile::Batch file;
    for (int row = 0; row < rows.count() && row < kLinesSaved; ++row) {
        const std::string& text = rows.at(row);
        m_notes.WriteOneRcd(kSection, numbers::Text("%d", scan::LeadingInt(text)).c_str(),
                            text.substr(std::min(kValueInRow, text.size())).c_str());
    }
    if (!file.Commit()) return config::SayNotSaved(m_notes.GetFile(), "the note fonts are");
    m_notes.ReadNoteFontInfo();
    return true;
}

}  // namespace zm::dialogs
