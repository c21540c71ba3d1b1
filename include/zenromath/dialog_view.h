// What a settings dialog shows, what its user does in it, what it decides: all that a window toolkit has to know to
// show the six dialogs. There is no toolkit in it.
//
// A host that can show windows overrides Host::RunDialog and keeps to this course:
//
//   1. make a window by dialog.layout() and dialog.Title(), call dialog.Open(), and show all fields;
//   2. for each thing that the user does: bring what he typed and chose into the fields, call one of Pressed,
//      RowChanged, RowClicked, and show the fields again. What the dialog itself changes is no event;
//   3. take the window away as soon as dialog.result has a value, also where it came from within a message box.
//
// Texts are bytes in GBK; places and sizes are dialog units of a nine point face: a quarter of its mean character width,
// an eighth of its height. docs/dialogs has the design.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "zenromath/platform.h"

namespace zm::dialogs {

/// What a control is.
enum class Kind {
    label,          ///< fixed text
    edit,           ///< one line of text
    masked,         ///< one line of text, each character shown as a mark
    check,          ///< check box
    button,         ///< push button
    defaultButton,  ///< the push button that Enter presses
    list,           ///< list box: rows of text, one selected; columns by tab stops
    table,          ///< list with column headings; cells of a row have tabs between them
    frame           ///< etched frame around nothing
};

/// A rectangle in dialog units: a quarter of the mean width and an eighth of the height of the dialog's characters.
struct Box {
    int x;       ///< from the left edge of the dialog
    int y;       ///< from its upper edge
    int width;   ///< dialog units
    int height;  ///< dialog units
};

/// A column of a table.
struct Column {
    const char* title;  ///< GBK
    int width;          ///< pixels of a screen of 96 dots an inch
};

/// One control of a template. The order of a template's controls is the order of the Tab key.
struct Control {
    int id;                                ///< -1 for labels and frames that are never asked for
    Kind kind;                             ///< what it is
    const char* text;                      ///< GBK
    Box box;                               ///< its place, dialog units
    char key = 0;                          ///< letter that reaches it together with Alt, 0 for none
    int limit = 0;                         ///< edit: characters that may be typed, 0 for any number
    std::span<const int> tabs = {};        ///< list: tab stops of its rows, dialog units
    std::span<const Column> columns = {};  ///< table: its columns
    bool fixedPitch = false;               ///< shown in a fixed-width face, so that padded rows align
    bool severalRows = false;              ///< table: several rows may be selected
};

/// What a dialog looks like.
struct Template {
    int id;                             ///< number of the resource
    const char* title;                  ///< GBK
    int width;                          ///< dialog units
    int height;                         ///< dialog units
    std::span<const Control> controls;  ///< in the order of the Tab key
};

/// The rows of a list or table with the selection, by the list box's own rules: a selection stays with its row when
/// rows come and go above it, and goes with it.
class ZM_API Rows {
 public:
    static constexpr int kNone = -1;  ///< no row

    /// How many rows there are.
    int count() const { return static_cast<int>(m_rows.size()); }
    /// The text of a row; empty outside the list.
    const std::string& at(int row) const;
    /// Takes all rows out.
    void Clear();
    /// Puts a row at the end.
    void Add(std::string text) { Insert(kNone, std::move(text)); }
    /// Puts a row in at a place from 0 to count(); any other place is the end.
    void Insert(int place, std::string text);
    /// Gives a row another text; selection and focus stay.
    void Put(int row, std::string text);
    /// Takes a row out; nothing for a place outside the list.
    void Delete(int row);

    int selected = kNone;  ///< the row that is selected
    int focused = kNone;   ///< table: the row that has the focus state
    /// A row that the dialog wants to be seen. The view makes it visible and sets kNone again.
    int reveal = kNone;

 private:
    std::vector<std::string> m_rows;
};

/// What is in a control.
struct Field {
    std::string text;      ///< of an edit; for a button its caption
    bool checked = false;  ///< of a check box
    bool visible = true;   ///< shown
    Rows rows;             ///< of a list or table
};

/// A rectangle that the window paints.
struct Sample {
    Box box;            ///< in client height / unitsOfHeight, both ways
    int unitsOfHeight;  ///< parts that the client area's height is divided into
    COLORREF colour;    ///< red in the low byte
};

/// The logic of one dialog.
class ZM_API Dialog {
 public:
    static constexpr int kNoControl = -1;  ///< no control

    /// layout must outlive the dialog.
    explicit Dialog(const Template& layout);
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    /// What it looks like.
    const Template& layout() const { return m_layout; }
    /// The title of the window, GBK.
    virtual std::string Title() const { return m_layout.title; }

    /// Fills the fields. Called once, before the window is seen.
    virtual void Open() = 0;
    /// A button was pressed. Esc and the window's close box are button 2 in every dialog, Enter in an edit is button 1.
    virtual void Pressed(int id) = 0;
    /// The user moved the selection of a list, by mouse or keyboard.
    virtual void RowChanged(int id);
    /// The user clicked into a table; selection and focus are what the click made of them.
    virtual void RowClicked(int id);
    /// What is done when the window is gone and the result is known.
    virtual void AfterClose() {}
    /// What is to be painted now, null for nothing.
    virtual const Sample* Painted() const { return nullptr; }

    /// The field of a control of the template.
    Field& field(int id);
    /// The same, to read.
    const Field& field(int id) const;

    /// The control that the dialog wants to have the keyboard, kNoControl for none. The view moves it there and sets
    /// kNoControl again.
    int focus = kNoControl;
    /// Set: the dialog has ended with this value, IDOK or IDCANCEL.
    std::optional<int> result;
    /// Why no window could be made, for the message: the view fills it before Host::RunDialog gives false.
    std::string obstacle;
    /// The window that the dialog belongs to; may be null, and may go away while the dialog is open.
    HWND owner = nullptr;

 private:
    const Template& m_layout;
    std::map<int, Field> m_fields;
};

/// Runs a dialog from beginning to end: the library's own module is the source of resources, the host shows the dialog,
/// the previous source comes back, and the dialog does what it left for the time after its window.
///
/// \return  the dialog's result; IDCANCEL if no window could be made, which is reported, or if it went away by itself
ZM_API int Run(Dialog& dialog);

}  // namespace zm::dialogs
