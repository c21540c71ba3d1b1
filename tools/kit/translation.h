// What the program says in the reader's language: each text is written here in English, and a catalogue of po/ has it in
// others. Without a catalogue, or where nobody asks for one, the English is what is shown.
//
// scripts/messages takes the texts out of the sources: what is written in Phrase(), N_() and the descriptions of options.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zm::tool {

/// Marks a text that is shown later, by a Phrase of it.
constexpr const char* N_(const char* english) {
    return english;
}

/// Something that is put into a text: text, one character or a whole number.
class Piece {
 public:
    Piece(std::string_view text) : m_text(text) {}    // NOLINT(google-explicit-constructor): pieces are written plainly
    Piece(const std::string& text) : m_text(text) {}  // NOLINT(google-explicit-constructor)
    Piece(const char* text) : m_text(text) {}         // NOLINT(google-explicit-constructor)
    template <std::same_as<char> Letter>
    Piece(Letter letter) : m_text(m_own, 1) {  // NOLINT(google-explicit-constructor)
        m_own[0] = letter;
    }
    template <std::integral Whole>
    requires(!std::same_as<Whole, char>) Piece(Whole number) {  // NOLINT(google-explicit-constructor)
        Write(number < 0, number < 0 ? 0 - static_cast<unsigned long long>(number) : number);
    }
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;
    std::string_view text() const { return m_text; }

 private:
    void Write(bool negative, unsigned long long magnitude);

    char m_own[24]{};
    std::string_view m_text;
};

/// The text in the reader's language; the English where the catalogue lacks it. Lives as long as the program, or as
/// the argument where that comes back.
const char* Translated(const char* english);

/// The text with {0}, {1} ... replaced by the pieces. A place without a piece stays as it is.
std::string Filled(std::string_view text, std::initializer_list<Piece> pieces);

/// The text in the reader's language, with its places filled.
template <typename... Pieces>
std::string Phrase(const char* english, const Pieces&... pieces) {
    return Filled(Translated(english), {Piece(pieces)...});
}
inline std::string Phrase(const std::string& english) {
    return Translated(english.c_str());
}

/// A text that another library put together, in the reader's language, if it is one of these: English with {0}, {1} for
/// what varies. What is in a place is looked up in turn. The text itself if it is none of them.
std::string Rephrased(const std::string& text, std::initializer_list<const char*> forms);

/// What the system says of an error number, in the reader's language where the catalogue has it.
std::string SystemError(int number);

/// Reads the catalogue for the reader's language (reader_locale.h), if share/locale beside the program's folder has one.
/// Call it once, before the first text.
void LoadTranslation();
/// True where a catalogue was read.
bool HasTranslation();

/// UTF-8 as the terminal wants it: GBK where the locale's encoding is GBK, GB18030 or GB2312, and as it is elsewhere.
/// Bytes that are no UTF-8, such as those of a file's name, stay.
std::string ForTerminal(std::string text);

/// How many columns of a terminal a text of UTF-8 takes: a Chinese character two.
std::size_t Columns(std::string_view text);
/// The text with blanks after it up to that many columns.
std::string InColumns(std::string text, std::size_t columns);

}  // namespace zm::tool
