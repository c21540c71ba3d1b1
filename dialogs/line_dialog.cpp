// One line of text, plain or masked.
#include <string>

#include "dialogs/settings.h"
#include "dialogs/texts.h"

namespace zm::dialogs {
namespace {

using namespace line;

constexpr char kAsksForMask[] = "password";  // exactly this

}  // namespace

LineDialog::LineDialog(const char* title, CString& value)
    : Dialog(kLineTemplate),
      m_title(title != nullptr ? title : texts::kLineTitle.gbk),
      m_value(value),
      m_masked(value.Compare(kAsksForMask) == 0) {
    if (m_masked) m_value.Empty();
}

void LineDialog::Open() {
    field(kPlain).visible = !m_masked;
    field(kMasked).visible = m_masked;
    field(kPlain).text = m_masked ? "" : m_value.GetString();
    field(kMasked).text.clear();
    focus = m_masked ? kMasked : kPlain;
}

void LineDialog::Pressed(int id) {
    if (id == kOkButton) {
        m_value = field(m_masked ? kMasked : kPlain).text.c_str();
        result = IDOK;
    }
    if (id == kCancelButton) result = IDCANCEL;
}

}  // namespace zm::dialogs
