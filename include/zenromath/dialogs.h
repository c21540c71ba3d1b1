// The six settings dialogs: layers, pen widths, note classes, note fonts, the palette, one line of text.
//
// All are modal and for the application's user-interface thread. They are shown by the host in force; under a host
// without windows a message says so and the result is that of a cancelled dialog. While one runs, the library's own
// module is the source of resources. Texts are bytes in GBK.
#pragma once

#include <string>

#include "zenromath/platform.h"

/// Edits the layers of the project, as ReadCengCi loaded them.
///
/// On OK the table has the rows of the list and WriteCengCi saves it; a failed save is reported by that.
/// \return  1 after OK, else 0 and nothing has changed
ZM_API int OpenCengciDlg(void);
/// Edits the pen widths. Opening reads the table from its file again; ReadCengCi must have made it.
///
/// On OK the table is that of the list and is saved; a failed save is reported with the path.
/// \return  1 after OK, else 0
ZM_API int OpenLineWidthDlg(void);
/// Edits the note classes of GetTqNoteLayBasePt. Closing the dialog in any way saves: the lines of the list go to the
/// file and the classes are read from it again.
///
/// \return  1 after it was saved; 0 without a table of notes, or where the file could not be written, both reported
ZM_API int OpenNoteClassDlg(void);
/// Edits the note fonts of GetTqNoteLayBasePt. A changed logical font is saved at once, the other values on OK.
///
/// \return  1 after OK, 0 if it was left by Esc or there is no table of notes, which is reported
ZM_API int OpenNoteFontDlg(void);
/// Edits the palette's colours 1 to 9.
///
/// On OK the palette has the colours of the list and WriteColorSetting saves it.
/// \return  1 after OK, else 0 and nothing has changed
ZM_API int SetSysColorSet(void);
/// Lets the user edit one line of text.
///
/// \param title  title of the window; null leaves it "Dialog"
/// \param value  the text to start with; on OK the edited text, else unchanged. Exactly "password" asks for a text that
///               is masked while it is typed: value is emptied at once, and stays empty if the user cancels
/// \return       1 after OK, else 0
ZM_API int ExecOneEdit(const char* title, CString& value);

// The same dialogs as classes. DoModal gives IDOK or IDCANCEL; everything else is as said above.

/// The layers.
class ZM_API CCengCi : public CDialog {
 public:
    enum { IDD = 178 };
    /// parent: the window that it belongs to, null for none.
    explicit CCengCi(CWnd* parent = nullptr) : CDialog(IDD, parent) {}
    INT_PTR DoModal() override;
};

/// The pen widths.
class ZM_API CLineWidth : public CDialog {
 public:
    enum { IDD = 131 };
    /// parent: the window that it belongs to, null for none.
    explicit CLineWidth(CWnd* parent = nullptr) : CDialog(IDD, parent) {}
    INT_PTR DoModal() override;
};

/// The note classes.
class ZM_API CNoteClass : public CDialog {
 public:
    enum { IDD = 198 };
    /// parent: the window that it belongs to, null for none.
    explicit CNoteClass(CWnd* parent = nullptr) : CDialog(IDD, parent) {}
    INT_PTR DoModal() override;
};

/// The note fonts.
class ZM_API CNoteFont : public CDialog {
 public:
    enum { IDD = 199 };
    /// parent: the window that it belongs to, null for none.
    explicit CNoteFont(CWnd* parent = nullptr) : CDialog(IDD, parent) {}
    INT_PTR DoModal() override;
};

/// The palette.
class ZM_API CSysColor : public CDialog {
 public:
    enum { IDD = 300 };
    /// parent: the window that it belongs to, null for none.
    explicit CSysColor(CWnd* parent = nullptr) : CDialog(IDD, parent) {}
    INT_PTR DoModal() override;
};

/// One line of text.
class ZM_API COneEdit : public CDialog {
 public:
    enum { IDD = 301 };
    /// parent: the window that it belongs to, null for none.
    explicit COneEdit(CWnd* parent = nullptr) : CDialog(IDD, parent) {}
    INT_PTR DoModal() override;

    /// Title of the window; null leaves the one of the template. Must live until DoModal returns.
    const char* m_title = nullptr;
    /// The text before and after, as in ExecOneEdit.
    CString m_value;
};
