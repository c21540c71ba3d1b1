// Progress on a terminal: one line on stderr that is written over and over, and Esc or Ctrl-C as the key that stops.
#pragma once

#include <termios.h>

#include <string>
#include <string_view>

namespace zm::platform {

/// A GBK text as it fits into so many columns: blanks at its start go first, then its end.
std::string FitColumns(std::string_view gbk, std::size_t columns);

class ProgressTerminal {
 public:
    ~ProgressTerminal();

    /// Is stderr a terminal?
    static bool HasLine();
    /// Shows a GBK text in the place of the one before; an empty text takes the line off. Nothing without a terminal.
    void Show(const char* gbk);
    /// Takes the line off, so that something else can be written; the next Show brings it back.
    void Hide();

    /// From now on Ctrl-C is a key, where the program has no use of its own for it, and so is each key that is typed,
    /// where stdin is a terminal and this process in its foreground. A second Ctrl-C that nobody has asked for yet ends
    /// the process as it always does.
    void StartKeys();
    void EndKeys();
    /// The next key that was typed; false if there is none. Ctrl-C counts as Esc, 27; keys of several bytes as their
    /// last.
    bool TakeKey(int& key);

 private:
    bool m_lineShown = false;
    bool m_catchesInterrupt = false;
    bool m_readsKeys = false;
    termios m_before{};
};

}  // namespace zm::platform
