// What all settings dialogs share: rows with their selection, fields, and the run from opening to closing.
#include <stdexcept>
#include <utility>

#include "dialogs/templates.h"
#include "runtime/text/numbers.h"
#include "zenromath/dialog_view.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::dialogs {
namespace {

// The library's own module is the source of resources while one lives.
class LibraryResources {
 public:
    LibraryResources() : m_previous(CurrentHost().PutResourceSource(CurrentHost().LibraryModule())) {}
    ~LibraryResources() { CurrentHost().PutResourceSource(m_previous); }
    LibraryResources(const LibraryResources&) = delete;
    LibraryResources& operator=(const LibraryResources&) = delete;

 private:
    void* m_previous;
};

void SayThatThereIsNoWindow(const Dialog& dialog) {
    const std::string why = dialog.obstacle.empty() ? "this program has no windows" : dialog.obstacle;
    _LMsg((dialog.Title() + numbers::Text(": dialog %d cannot be shown, ", dialog.layout().id) + why +
           ". Nothing was changed.")
              .c_str(),
          nullptr, 0);
}

// Where a place lies after a row came in before it or at it.
int AfterInsert(int place, int inserted) {
    return place >= inserted ? place + 1 : place;
}
int AfterDelete(int place, int deleted) {
    if (place == deleted) return Rows::kNone;
    return place > deleted ? place - 1 : place;
}

bool CanHoldSomething(const Control& control) {
    return control.id != kNoId;
}

}  // namespace

const std::string& Rows::at(int row) const {
    static const std::string kEmpty;
    return row >= 0 && row < count() ? m_rows[static_cast<std::size_t>(row)] : kEmpty;
}

void Rows::Clear() {
    *this = Rows();
}

void Rows::Insert(int place, std::string text) {
    if (place < 0 || place > count()) place = count();
    m_rows.insert(m_rows.begin() + place, std::move(text));
    selected = AfterInsert(selected, place);
    focused = AfterInsert(focused, place);
}

void Rows::Put(int row, std::string text) {
    if (row >= 0 && row < count()) m_rows[static_cast<std::size_t>(row)] = std::move(text);
}

void Rows::Delete(int row) {
    if (row < 0 || row >= count()) return;
    m_rows.erase(m_rows.begin() + row);
    selected = AfterDelete(selected, row);
    focused = AfterDelete(focused, row);
    reveal = AfterDelete(reveal, row);
}

Dialog::Dialog(const Template& layout) : m_layout(layout) {
    for (const Control& control : layout.controls)
        if (CanHoldSomething(control)) m_fields[control.id].text = control.text;
}

Dialog::~Dialog() = default;

void Dialog::RowChanged(int) {}
void Dialog::RowClicked(int) {}

Field& Dialog::field(int id) {
    const auto found = m_fields.find(id);
    if (found == m_fields.end()) throw std::out_of_range(numbers::Text("dialog %d: no control %d", m_layout.id, id));
    return found->second;
}

const Field& Dialog::field(int id) const {
    return const_cast<Dialog*>(this)->field(id);
}

int Run(Dialog& dialog) {
    if (dialog.owner == nullptr) dialog.owner = CurrentHost().MainWindow();
    bool shown = false;
    {
        const LibraryResources resources;
        shown = CurrentHost().RunDialog(dialog);
    }
    if (!shown) SayThatThereIsNoWindow(dialog);
    if (!shown || !dialog.result) return IDCANCEL;
    dialog.AfterClose();
    return *dialog.result == IDOK ? IDOK : IDCANCEL;
}

}  // namespace zm::dialogs
