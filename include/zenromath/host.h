// The host: what the library asks of the program around it. Message boxes, beeps, titles, status bar, cursor, keys,
// the message pump, the font chooser, dialogs, the end of the process, the clock.
//
// The console host is in force at load. An application with windows of its own derives from Host and puts it in force
// with SetHost. All texts are bytes in GBK.
#pragma once

#include "zenromath/platform.h"

namespace zm {

namespace dialogs {
class Dialog;
}

/// The standard cursors.
enum class Cursor { arrow, wait };

/// One message of the queue: the fields that the library looks at.
struct QueueMessage {
    HWND window = nullptr;  ///< null: of the thread
    UINT message = 0;       ///< its number
    UInt64 wparam = 0;      ///< its first parameter
    Int64 lparam = 0;       ///< its second parameter
};

/// What the library asks of the program around it. Texts are GBK.
class ZM_API Host {
 public:
    virtual ~Host();

    /// Shows a box and waits for its answer.
    /// \param type  MB_ values as in zenromath/platform.h: buttons, icon, modality
    /// \return      the button: IDOK, IDYES, IDNO ...; a host that cannot ask answers a question with IDNO
    virtual int ShowBox(const char* text, const char* title, unsigned int type) = 0;
    /// The application object's own message box; help is the help context, 0 for none.
    virtual int ShowAppBox(const char* text, unsigned int type, unsigned int help);
    /// The system's signal.
    virtual void Beep() = 0;

    /// The main window of the current thread, null where there is none.
    virtual HWND MainWindow() { return nullptr; }
    /// True where a handle is that of a window.
    virtual bool IsWindow(HWND) { return false; }
    /// Copies at most size - 1 bytes and an end byte; the number of bytes copied.
    virtual int GetText(HWND window, char* buffer, int size);
    /// Sets the text of a window.
    virtual void SetText(HWND, const char*) {}
    /// Sets a pane of the main window's status bar; false where there is no such thing.
    virtual bool SetStatusPane(int, const char*) { return false; }
    /// The title of a frame window with an active view: its document's, or its own. False for any other window.
    virtual bool GetFrameTitle(HWND, char*, int) { return false; }
    /// Sets that title. False where GetFrameTitle would be.
    virtual bool SetFrameTitle(HWND, const char*) { return false; }
    /// Sends a message to a window and waits; its answer.
    virtual Int64 Send(HWND, unsigned int, UInt64, Int64) { return 0; }

    /// Puts a cursor in force; the previous one, null if there was none.
    virtual HCURSOR PutCursor(HCURSOR) { return nullptr; }
    /// The handle of a standard cursor.
    virtual HCURSOR StandardCursor(Cursor) { return nullptr; }

    /// Takes the next waiting message between first and last (both 0: any) for a window (null: any of the thread).
    virtual bool TakeMessage(QueueMessage&, HWND, unsigned int, unsigned int) { return false; }
    /// Translates and dispatches a message that was taken.
    virtual void Dispatch(const QueueMessage&) {}

    /// Lets the user choose a font, starting from the one given; false if he did not.
    virtual bool PickFont(HWND, LOGFONT&) { return false; }

    /// Shows a settings dialog until its result is set; zenromath/dialog_view.h has the course of it. A window that goes
    /// away by itself, with its owner for example, leaves the result unset.
    /// \return  false if no window can be shown; the dialog was not opened then
    virtual bool RunDialog(dialogs::Dialog&) { return false; }
    /// Makes a module the source of resources; the previous one, null where there is none.
    virtual void* PutResourceSource(void*) { return nullptr; }
    /// The library's own module, null where a program has no resources.
    virtual void* LibraryModule() { return nullptr; }

    /// Seconds since some fixed moment, for progress.
    virtual double Now();
    /// Ends the process with this status. Does not return; a test host may leave by an exception of its own.
    [[noreturn]] virtual void EndProcess(int status);
};

/// The host in force. Never null.
ZM_API Host& CurrentHost();
/// Puts a host in force, the console host if null, and returns the previous one. The caller keeps owning it.
ZM_API Host* SetHost(Host* host);

}  // namespace zm
