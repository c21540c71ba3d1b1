// Runtime services: messages and internal errors, profile files, the wait cursor, the project file.
//
// All texts are bytes in GBK. All functions are for the application's user-interface thread.
#pragma once

#include "zenromath/platform.h"

/// Where a CLMsg goes.
enum CLMsgOutTo {
    CLMsgToPane0 = 0,  ///< pane 0 of the main frame's status bar
    CLMsgToPane1 = 1,  ///< pane 1
    CLMsgToPane2 = 2,  ///< pane 2
    CLMsgToTitle = 3,  ///< title of the main window
    CLMsgToFile = 4,   ///< a line appended to the file named at construction
    CLMsgToBox = 5     ///< message box; also any other value, and what 0 to 3 fall back to
};

/// A message that is built item by item and shown when "endl" is fed.
///
/// Every item is followed by the delimiter, the last one included: "a", 1, "endl" shows a:1: with the default.
/// What is fed behind the last "endl" is never shown.
class ZM_API CLMsg {
 public:
    /// \param target  where "endl" sends the message
    /// \param name    file for CLMsgToFile, and title of message boxes; null for none. At most 255 bytes; a longer
    ///                name is left out with a message, since half a path names another file.
    /// \param beep    non-zero: OutMsg beeps first
    CLMsg(CLMsgOutTo target = CLMsgToBox, const char* name = nullptr, int beep = 0);
    ~CLMsg();
    CLMsg(const CLMsg&) = delete;
    CLMsg& operator=(const CLMsg&) = delete;

    /// Appends a text; exactly "endl" shows the buffer and empties it. Null is an empty text. The text may be of any
    /// length.
    CLMsg& operator<<(const char* text);
    /// "%d"
    CLMsg& operator<<(int value);
    /// "%f", with a decimal point in every locale
    CLMsg& operator<<(float value);
    CLMsg& operator<<(double value);
    /// The control's window text, at most 119 bytes; a null control or one without window is an empty text.
    CLMsg& operator<<(CEdit* edit);
    CLMsg& operator<<(CStatic* label);
    /// Appends a string object. Unlike a char text it is never taken for "endl".
    CLMsg& operator<<(const CString& text);

    /// Shows the buffer and leaves it as it is.
    ///
    /// \param target  as a CLMsgOutTo; any other value is the box
    /// \param ask     non-zero: a question box with Yes and No, whatever the target
    /// \return        1 for the answer Yes, else 0
    ///
    /// Boxes have name as title, "Zenro Info" if it is empty. The status bar and the title fall back to the box where
    /// there is no main window; a file that cannot be opened is left out in silence.
    int OutMsg(CLMsgOutTo target, int ask);
    /// What stands behind each item from now on; null is an empty text.
    void SetDelimiter(const char* text);
    /// Leaves the file named at construction empty; without a name, or where it cannot be opened, nothing happens.
    void ResetFile();
    /// A copy of the buffer.
    CString GetMsgBuf() const;

 private:
    CLMsg& AddToBuf(const char* text);

    char m_scratch[120];
    char m_name[256];
    int m_beep;
    CLMsgOutTo m_target;
    CString m_delimiter;
    CString m_buffer;
};

/// Beeps, then shows a text in a box without owner.
///
/// \param text   null or empty: nothing is shown, but the beep is heard
/// \param title  null: "Zenro Info"
/// \param ask    non-zero: a question with Yes and No
/// \return       1 for the answer Yes, else 0
ZM_API int _LMsg(const char* text, const char* title, int ask);
/// The same with string id of the application's string table; an id that it lacks is an empty text. Without a string
/// table on the platform every id is lacking, unless SetStringTable of namespace zm gives one.
ZM_API int _LMsg(int id, const char* title, int ask);

/// Reports an internal error and asks whether to stop; Yes ends the process with status 13, No returns.
///
/// \param cond  0: nothing happens at all
/// \param what, where, func  what is wrong, in which file or class, in which function; the message holds at most 511
///                           bytes. Null is an empty text.
ZM_API void _LErr(int cond, const char* what, const char* where, const char* func);

/// A message box of the application: the callback's result if one is set, else the application object's own box.
ZM_API int AfxMessageBox2(const char* text, unsigned int type = 0, unsigned int help = 0);
/// Sets the callback of AfxMessageBox2; null restores the default.
ZM_API void Set_MessageBox_Process(int (*process)(const char*, unsigned int, unsigned int));

/// Sends a window message: the callback's result if one is set; else the window's own answer if
/// wnd is not null and its window exists; else 0.
ZM_API int WindowSendMeassage(CWnd* wnd, unsigned int msg, zm::UInt64 wparam, zm::Int64 lparam);
/// Sets the callback of WindowSendMeassage; null restores the default.
ZM_API void Set_WindowSendMeassageEx(int (*process)(CWnd*, unsigned int, zm::UInt64, zm::Int64));

/// The library's application object, built at load behind the project file state. It adds nothing to its base and has
/// no name.
class ZM_API CZenroMathApp : public CWinApp {
 public:
    CZenroMathApp();
};

namespace zm {
/// Gives _LMsg its string table: a function that returns the GBK text of an id, or null. Null takes it away.
ZM_API void SetStringTable(const char* (*lookUp)(int id));
}  // namespace zm
