// The exported functions and classes of the six dialogs.
#include "config/state.h"
#include "dialogs/settings.h"
#include "zenromath/config.h"
#include "zenromath/dialogs.h"
#include "zenromath/runtime.h"

namespace zm::dialogs {
namespace {

bool HasTables(const char* what) {
    if (config::state().layers != nullptr && config::state().penWidths != nullptr) return true;
    _LMsg((std::string(what) + " are not loaded yet: name a project with _LFInit and call ReadCengCi first.").c_str(),
          nullptr, 0);
    return false;
}

TqNoteLayBase* Notes() {
    TqNoteLayBase* notes = GetTqNoteLayBasePt();
    if (notes == nullptr)
        _LMsg("The note classes are not loaded: put Orvnote.cod beside the library and make a TqNoteLayBase first.",
              nullptr, 0);
    return notes;
}

int RunFor(Dialog&& dialog, const CWnd* parent) {
    dialog.owner = parent != nullptr ? parent->GetSafeHwnd() : nullptr;
    return Run(dialog);
}

int RunLayers(const CWnd* parent) {
    return HasTables("The layers") ? RunFor(LayersDialog(), parent) : IDCANCEL;
}
int RunWidths(const CWnd* parent) {
    return HasTables("The pen widths") ? RunFor(WidthsDialog(), parent) : IDCANCEL;
}
int RunClasses(const CWnd* parent) {
    TqNoteLayBase* notes = Notes();
    return notes != nullptr ? RunFor(ClassesDialog(*notes), parent) : IDCANCEL;
}
int RunFonts(const CWnd* parent) {
    TqNoteLayBase* notes = Notes();
    return notes != nullptr ? RunFor(FontsDialog(*notes), parent) : IDCANCEL;
}
int RunColours(const CWnd* parent) {
    return RunFor(ColoursDialog(), parent);
}
int RunLine(const char* title, CString& value, const CWnd* parent) {
    return RunFor(LineDialog(title, value), parent);
}

// What the entry functions give.
int Done(int result) {
    return result == IDOK ? 1 : 0;
}

}  // namespace
}  // namespace zm::dialogs

namespace zd = zm::dialogs;

int OpenCengciDlg(void) {
    return zd::Done(zd::RunLayers(nullptr));
}
int OpenLineWidthDlg(void) {
    return zd::Done(zd::RunWidths(nullptr));
}
int OpenNoteClassDlg(void) {
    return zd::Done(zd::RunClasses(nullptr));
}
int OpenNoteFontDlg(void) {
    return zd::Done(zd::RunFonts(nullptr));
}
int SetSysColorSet(void) {
    return zd::Done(zd::RunColours(nullptr));
}
int ExecOneEdit(const char* title, CString& value) {
    return zd::Done(zd::RunLine(title, value, nullptr));
}

INT_PTR CCengCi::DoModal() {
    return zd::RunLayers(m_parent);
}
INT_PTR CLineWidth::DoModal() {
    return zd::RunWidths(m_parent);
}
INT_PTR CNoteClass::DoModal() {
    return zd::RunClasses(m_parent);
}
INT_PTR CNoteFont::DoModal() {
    return zd::RunFonts(m_parent);
}
INT_PTR CSysColor::DoModal() {
    return zd::RunColours(m_parent);
}
INT_PTR COneEdit::DoModal() {
    return zd::RunLine(m_title, m_value, m_parent);
}
