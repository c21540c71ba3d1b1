#include "tools/kit/translation.h"

#include <algorithm>
#include <cstring>

#include "tools/kit/message_catalogue.h"
#include "tools/kit/reader_locale.h"
#include "tools/kit/utf8.h"
#include "zenromath/gbk.h"

namespace zm::tool {
namespace {

// What the system says most often where files and processes fail.
[[maybe_unused]] constexpr const char* kSystemErrors[] = {
    N_("No such file or directory"),
    N_("Permission denied"),
    N_("No space left on device"),
    N_("Is a directory"),
    N_("Not a directory"),
    N_("File exists"),
    N_("Read-only file system"),
    N_("Disk quota exceeded"),
    N_("File too large"),
    N_("File name too long"),
    N_("Input/output error"),
    N_("Too many open files"),
    N_("Too many levels of symbolic links"),
    N_("Operation not permitted"),
    N_("Resource temporarily unavailable"),
    N_("Cannot allocate memory"),
    N_("Bad file descriptor"),
    N_("Device or resource busy"),
    N_("Invalid argument"),
};

// Why the library refuses a sheet, by the names that it has for that.
[[maybe_unused]] constexpr const char* kRefusals[] = {
    N_("malformed"), N_("range"),    N_("outside"), N_("scale"),    N_("size"),     N_("style"),
    N_("origin"),    N_("off-grid"), N_("box"),     N_("negative"), N_("too-many"),
};

MessageCatalogue& Catalogue() {
    static MessageCatalogue catalogue;
    return catalogue;
}

// The number of a place "{12}" that begins at a brace; -1 where it is none. end: after it.
int PlaceAt(std::string_view text, std::size_t at, std::size_t& end) {
    int number = 0;
    end = at + 1;
    while (end < text.size() && end - at < 3 && text[end] >= '0' && text[end] <= '9')
        number = number * 10 + (text[end++] - '0');
    if (end == at + 1 || end >= text.size() || text[end] != '}') return -1;
    ++end;
    return number;
}

// The parts of a text that stand in the places {0}, {1} ... of a form, in this order; false where it has not the form.
bool Matches(std::string_view text, std::string_view form, std::string (&parts)[4]) {
    std::size_t end = 0;
    const std::size_t brace = form.find('{');
    if (brace == std::string_view::npos) return text == form;
    if (text.substr(0, brace) != form.substr(0, brace)) return false;
    const int place = PlaceAt(form, brace, end);
    if (place < 0 || place > 3) return false;
    text.remove_prefix(brace);
    form.remove_prefix(end);
    const std::string_view next = form.substr(0, form.find('{'));
    for (std::size_t stop = next.empty() ? text.size() : text.find(next); stop != std::string_view::npos;
         stop = next.empty() ? std::string_view::npos : text.find(next, stop + 1))
        if (Matches(text.substr(stop), form, parts)) {
            parts[place] = text.substr(0, stop);
            return true;
        }
    return false;
}

bool TerminalTakesGbk() {
    static const bool gbk = LocaleEncodingIsGbk();
    return gbk;
}

}  // namespace

void Piece::Write(bool negative, unsigned long long magnitude) {
    std::size_t at = sizeof m_own;
    do {
        m_own[--at] = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (negative) m_own[--at] = '-';
    m_text = std::string_view(m_own + at, sizeof m_own - at);
}

const char* Translated(const char* english) {
    const char* found = Catalogue().Find(english);
    return found != nullptr ? found : english;
}

std::string Filled(std::string_view text, std::initializer_list<Piece> pieces) {
    std::string filled;
    filled.reserve(text.size() + 16 * pieces.size());
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        const int place = text[at] == '{' ? PlaceAt(text, at, end) : -1;
        if (place >= 0 && static_cast<std::size_t>(place) < pieces.size()) {
            filled += (pieces.begin() + place)->text();
            at = end;
        } else {
            filled += text[at++];
        }
    }
    return filled;
}

std::string Rephrased(const std::string& text, std::initializer_list<const char*> forms) {
    if (!HasTranslation()) return text;
    for (const char* form : forms) {
        std::string parts[4];
        if (!Matches(text, form, parts)) continue;
        for (std::string& part : parts)
            if (part.size() < text.size()) part = Rephrased(part, forms);
        return Filled(Translated(form), {parts[0], parts[1], parts[2], parts[3]});
    }
    return Translated(text.c_str());
}

std::string SystemError(int number) {
    return Translated(std::strerror(number));
}

void LoadTranslation() {
    const std::string languages = ReaderLanguages();
    const std::filesystem::path locales = ProgramFolder().parent_path() / "share" / "locale";
    for (std::size_t from = 0; from < languages.size();) {
        const std::size_t to = std::min(languages.find(':', from), languages.size());
        MessageCatalogue found(locales / languages.substr(from, to - from) / "LC_MESSAGES" / "zenro.mo");
        if (!found.empty()) {
            Catalogue() = std::move(found);
            return;
        }
        from = to + 1;
    }
}

bool HasTranslation() {
    return !Catalogue().empty();
}

std::size_t Columns(std::string_view text) {
    std::size_t columns = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 || byte >= 0xC0) columns += byte >= 0xE0 ? 2 : 1;
    }
    return columns;
}

std::string InColumns(std::string text, std::size_t columns) {
    const std::size_t taken = Columns(text);
    if (taken < columns) text.append(columns - taken, ' ');
    return text;
}

std::string ForTerminal(std::string text) {
    if (!TerminalTakesGbk()) return text;
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = Utf8Length(text, at);
        if (length == 0)
            shown += text[at];
        else
            shown += length == 1 ? text.substr(at, 1) : gbk::FromUtf8(std::string_view(text).substr(at, length));
        at += length == 0 ? 1 : length;
    }
    return shown;
}

}  // namespace zm::tool
