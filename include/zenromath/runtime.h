// Runtime services: messages and internal errors, profile files, the wait cursor, the project file.
//
// All texts are bytes in GBK. All functions are for the application's user-interface thread.
#pragma once

#include "zenromath/platform.h"

/// Where a CLMsg goes.
enum CLMsgOutTo : int {
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
/// What is fed after the last "endl" is never shown.
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
    /// "%f", as of a float
    CLMsg& operator<<(double value);
    /// The control's window text, at most 119 bytes; a null control or one without window is an empty text.
    CLMsg& operator<<(CEdit* edit);
    /// As of an edit.
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
    /// What is put after each item from now on; null is an empty text.
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

/// The library's application object, built at load after the project file state. It adds nothing to its base and has
/// no name.
class ZM_API CZenroMathApp : public CWinApp {
 public:
    CZenroMathApp();
};

// ---- Profile files ------------------------------------------------------------------------------------------------
//
// Configuration lies in profile files: sections in brackets, lines of key, equals sign and value, bytes in GBK. Section
// and key names are compared without regard to ASCII case. All seven calls resolve file and where through
// GetZenroINIPath; nothing is shown to the user, whatever happens.

/// The path of a profile file.
///
/// \param name   a path is returned unchanged: a name whose first backslash, or for want of one first forward slash, is
///               not its first byte, and a name that begins with two backslashes or two forward slashes. So
///               `sub\a.ini` stays relative to the current directory of the process. Any other name is put after the
///               directory of where and a backslash, `\a.ini` with its own leading backslash too.
/// \param where  0 project directory, 2 ini directory below the module directory, 3 configuration directory of the
///               machine, any other value (1 and -1 included) the module directory. Not the table of _LFWholeName.
/// \return       the path; an empty text for a null or empty name, and after a message where the path would not fit
///               255 bytes. The directory is neither tested nor made.
ZM_API CString GetZenroINIPath(const char* name, int where);

/// Reads a whole number.
///
/// \param def  the result where file, section or key are missing
/// \return     the number that the value begins with (decimal, with sign; 0x and 0o and 0b prefixes count as number
///             bases), 0 where it begins with none; numbers beyond 32 bits are taken modulo 2 to the 32nd
ZM_API unsigned int GetZenroProfileInt(const char* section, const char* key, int def, const char* file, int where);

/// Reads all lines of a section, each with an end byte, and one end byte more after the last.
///
/// \param[out] buf  lines without comments; key and value without the blanks around them, quotes kept
/// \param size      bytes of buf
/// \return          bytes copied without the last end byte; size - 2 where the section does not fit
ZM_API unsigned long GetZenroProfileSection(const char* section, char* buf, unsigned long size, const char* file,
                                            int where);

/// Reads a value as text.
///
/// \param section   null: the names of all sections are listed, each with an end byte and one more after the last
/// \param key       null: the names of all keys of the section are listed in the same way
/// \param def       used where file, section or key are missing; its trailing blanks are dropped; null is empty
/// \param[out] buf  the value without the blanks around it and without one pair of equal quotes; always terminated if
///                  size is above 0
/// \param size      bytes of buf
/// \return          bytes copied without the end byte; size - 1 where a value, size - 2 where a list does not fit
ZM_API unsigned long GetZenroProfileString(const char* section, const char* key, const char* def, char* buf,
                                           unsigned long size, const char* file, int where);

/// Reads binary data that WriteZenroProfileStruct wrote: hexadecimal bytes and a checksum byte.
///
/// \param[out] data  size bytes; unchanged unless the result is 1
/// \return           1 if the value has exactly size bytes and the checksum holds, else 0
ZM_API int GetZenroProfileStruct(const char* section, const char* key, void* data, unsigned int size, const char* file,
                                 int where);

/// Replaces the whole text of a section, making file and section where they do not exist.
///
/// \param text  lines, each with an end byte, and one more after the last; an empty text removes the section's keys
///              and leaves its header; null removes the section
/// \return      1, or 0 where the file could not be written; what it held before is kept then
ZM_API int WriteZenroProfileSection(const char* section, const char* text, const char* file, int where);

/// Writes a value, making file, section and key where they do not exist. A changed key keeps its place, a new one goes
/// after the last of its section. Comments and everything else in the file stay.
///
/// \param key    null removes the section
/// \param value  null removes the key
/// \return       1, or 0 where the file could not be written; what it held before is kept then
ZM_API unsigned long WriteZenroProfileString(const char* section, const char* key, const char* value, const char* file,
                                             int where);

/// Writes binary data as upper-case hexadecimal text with a checksum byte, the sum of all bytes modulo 256.
///
/// \param data  size bytes; null removes the key
/// \return      1, or 0 where the file could not be written
ZM_API int WriteZenroProfileStruct(const char* section, const char* key, void* data, unsigned int size,
                                   const char* file, int where);

/// Copies a file.
///
/// \param from, to  paths
/// \param mode      how "to" is opened, null for "w+b"; with a mode the copy goes to the end of what "to" holds, so
///                  "a" and "r+b" add to it
/// \return          1; 0 after a message, the path and " no exist", if either file cannot be opened, and after a
///                  message of its own if "to" cannot be written to the end
ZM_API int filescopy(char* from, char* to, char* mode);

// ---- Wait cursor and progress -------------------------------------------------------------------------------------

namespace zm::runtime {
struct WaitTimes;  // reads the time of an object's last message
}

/// Shows the wait cursor and reports progress in the title of a window while it lives.
class ZM_API tqwaitcur {
 public:
    /// Puts the wait cursor in force and gives the window its first title.
    ///
    /// \param text  the title; null leaves it as it is. The title before is saved either way, 255 bytes of it.
    /// \param wnd   null: the main window of the current thread; without one the cursor shows and no window is touched
    explicit tqwaitcur(const char* text = nullptr, HWND wnd = nullptr);
    /// restore, then the saved title goes back, an empty one if none was saved.
    ~tqwaitcur();
    tqwaitcur(const tqwaitcur&) = delete;
    tqwaitcur& operator=(const tqwaitcur&) = delete;

    /// Puts the cursor before this object back in force, the standard arrow if there was none.
    void restore();
    /// Shows a text in the title; with sz_bPeekMessage also lets waiting messages run, mouse and quit messages dropped.
    /// Null keeps the title. Stamps the time of the last message in every case.
    void setmessage(const char* text);
    /// Shows a progress line: the text right-aligned in 40 places, a bar of 35 places with a face at percent / 3, and
    /// the percentage. Nothing happens without a window.
    ///
    /// \param percent  0 to 100
    /// \param text     null is an empty text. The line has 255 bytes: of a longer text the end is left out, never the
    ///                 half of a two-byte character.
    void setmessage(int percent, const char* text);
    /// 1 if the next waiting key release of the window is that of Esc, else 0. At most one key release is used up, that
    /// of another key too.
    int IsESCpressed();

    /// True: setmessage pumps the messages of the thread. False at load.
    static bool sz_bPeekMessage;

 private:
    friend struct zm::runtime::WaitTimes;
    void SetWndText(const char* text, int save);

    HCURSOR m_previousCursor = nullptr;
    char m_savedTitle[256] = {};
    HWND m_window = nullptr;
    double m_lastMessageTime;  // seconds of the host's clock
};

/// Switches tqwaitcur::sz_bPeekMessage off around code that may not be re-entered, or on with false. Nests.
class ZM_API NoPeekMessageOnWaitMsg {
 public:
    /// \param nopeek  false: on
    [[nodiscard]] explicit NoPeekMessageOnWaitMsg(bool nopeek = true);
    ~NoPeekMessageOnWaitMsg();
    NoPeekMessageOnWaitMsg(const NoPeekMessageOnWaitMsg&) = delete;
    NoPeekMessageOnWaitMsg& operator=(const NoPeekMessageOnWaitMsg&) = delete;

 private:
    bool m_previous;
};

// One wait object for code that has none at hand, in the wait slot. Without an object in it every call is safe and does
// nothing. Texts are at most 1999 bytes after formatting; a longer one is cut.

/// Hides the progress of the functions below; the old value. Keeps an object that is in the slot, with its cursor.
ZM_API bool SetHideWaitMsg(bool hide);
/// Ends the object in the slot and, unless hidden, puts a new one there. Arguments as of tqwaitcur.
ZM_API void _LWaitMsg(const char* text, HWND wnd);
/// Ends the object in the slot.
ZM_API void _LWaitMsgEnd();
/// setmessage of the slot's object, unless hidden.
ZM_API void _LWaitReMsg(const char* text);
/// The same with "%s %d".
ZM_API void _LWaitReMsg(const char* text, int n);
/// The same with a formatted text.
ZM_API void _LWaitReMsg2(const char* format, ...);
/// Shows the text, with the number unless n is -9999, and asks for Esc.
/// \return 1 if the slot holds an object and its IsESCpressed says so, hidden or not; else 0
ZM_API int _LWaitReMsgEsc(const char* text, int n);
/// The form of work loops, cheap enough to be called on every item: shows a progress line when current is a multiple of
/// a hundredth of total or more than two seconds have passed since the last, and asks for Esc.
///
/// \param total    items, below 1 counts as 1
/// \param current  items done, limited to 0 .. total
/// \return         1 if Esc was released, else 0; 0 without an object and while hidden
ZM_API int _LWaitReMsgEsc2(int total, int current, const char* format, ...);

// ---- The project file ---------------------------------------------------------------------------------------------
//
// One current project for the whole library. Path texts have backslashes, hold at most 255 bytes and are refused with a
// message where they would be longer. "Base name and ext" means: the base name, a "." unless ext begins with one, ext.

/// Names the project, moves the process to its directory and makes that the project directory.
///
/// \param name      path of the project; what follows its last "." is cut if that comes after the last backslash.
///                  Without a backslash it lies in the current directory. The text is changed during the call and put
///                  back, so it can't be a constant.
/// \param ext       extension of the current file
/// \param fallback  null, or the file to be remembered as chosen where the current file cannot be opened
/// Errors: a project directory that does not exist is taken and the process stays where it is. A path beyond 255 bytes
/// is refused with a message and changes nothing.
ZM_API void _LFInit(char* name, char* ext, char* fallback);
/// The current file becomes base name and ext, for everybody.
ZM_API void _LFSetExt(char* ext);
/// Writes base name and ext into buf, which has room for 256 bytes. The state stays as it is.
ZM_API void _LFExt(char* buf, char* ext);
/// Sets the current section, at most 255 bytes.
ZM_API void _LFRcd(char* section);

/// Reads a whole number of the current file; section, if not null, becomes the current section first. As
/// GetZenroProfileInt.
ZM_API int _LFGetI(int def, char* key, char* section);
/// Reads a text of the current file into buf of size bytes. As GetZenroProfileString.
ZM_API int _LFGetS(char* def, char* buf, int size, char* key, char* section);
/// Writes a number in decimal; 1, or 0 where the file could not be written.
ZM_API int _LFWrtI(int value, char* key, char* section);
/// Writes a text; null removes the key. 1, or 0 where the file could not be written.
ZM_API int _LFWrtS(char* value, char* key, char* section);

/// The project directory: at load the current directory of the process. Valid until the next _LFInit.
ZM_API const char* _LFPrjDir();
/// The module directory: the folder of the library file itself, without an ending separator.
ZM_API const char* _LFModDir();
/// "ZenroIni" in the module directory.
ZM_API const char* _LFIniDir();
/// The machine directory if it could be written at load, else the module directory. On Windows the Windows directory;
/// elsewhere the user's folder $XDG_CONFIG_HOME/zenromath, by default ~/.config/zenromath.
ZM_API const char* _LFWndDir();

/// Writes directory and file name into buf and returns it.
///
/// \param[out] buf  256 bytes; an empty text after a message where the path would not fit
/// \param name      only what comes after its last backslash counts
/// \param ext       null keeps the extension, else it replaces what follows the last "."
/// \param where     1 module, 2 ini, 3 machine directory, any other value the project directory
ZM_API const char* _LFWholeName(char* buf, char* name, char* ext, int where);

namespace zm {
/// Gives _LMsg its string table: a function that returns the GBK text of an id, or null. Null takes it away.
ZM_API void SetStringTable(const char* (*lookUp)(int id));
}  // namespace zm
