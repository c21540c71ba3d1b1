#include "tools/kit/text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <fstream>

#include "runtime/files/path_escape.h"
#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "tools/kit/exit_codes.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

// The letter without its accent, of U+00C0 to U+00FF; empty for any other character.
std::string PlainLetter(const std::string& utf8) {
    if (utf8.size() != 2 || static_cast<unsigned char>(utf8[0]) != 0xC3) return {};
    static constexpr const char* kPlain[64] = {
        "A", "A", "A", "A", "A", "A", "AE", "C", "E", "E",  "E", "E", "I", "I", "I", "I", "D",  "N", "O", "O", "O", "O",
        "O", "",  "O", "U", "U", "U", "U",  "Y", "",  "ss", "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e",
        "i", "i", "i", "i", "d", "n", "o",  "o", "o", "o",  "o", "",  "o", "u", "u", "u", "u",  "y", "",  "y"};
    return kPlain[static_cast<unsigned char>(utf8[1]) & 0x3FU];
}

// number stays where the text is none from its beginning to its end.
template <class Number>
bool Read(std::string_view text, Number& number) {
    Number read{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    number = read;
    return true;
}

}  // namespace

std::string Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return std::string(text.substr(first, last - first + 1));
}

bool ReadWhole(std::string_view text, int& number) {
    return Read(text, number);
}

bool ReadReal(std::string_view text, double& number) {
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double read = 0.0;
    if (!Read(text, read) || !std::isfinite(read)) return false;
    number = read;
    return true;
}

std::string Fixed(double number, int decimals) {
    std::string text = numbers::Text("%.*f", decimals, number);
    // A negative zero reads like a mistake.
    if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
    return text;
}

std::string ReadWholeFile(const fs::path& path, std::size_t limit) {
    if (path == "-") return ReadStandardInput(limit);
    std::error_code error;
    if (fs::is_directory(path, error))
        throw Failure(kNoInput, Phrase("{0}: is a directory, not a file.", path.string()));
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw Failure(kNoInput, Phrase("{0}: cannot be opened. Check the path and its permissions.", path.string()));
    const auto tooLarge = [&] {
        return Failure(kNoInput,
                       Phrase("{0}: is larger than {1} MiB; that is not such a file.", path.string(), limit >> 20));
    };
    if (const std::uintmax_t size = fs::file_size(path, error); !error && size > limit) throw tooLarge();
    std::string bytes;
    char block[65536];
    while (in.read(block, sizeof block), in.gcount() > 0) {
        bytes.append(block, static_cast<std::size_t>(in.gcount()));
        if (bytes.size() > limit) throw tooLarge();  // a file that grows, or a pipe
    }
    if (in.bad()) throw Failure(kNoInput, Phrase("{0}: cannot be read: {1}.", path.string(), SystemError(errno)));
    return bytes;
}

bool NextLine(std::FILE* file, const std::string& name, std::string& line) {
    constexpr std::size_t kLongest = 64u << 20;  // an area of a recording has two million vertices then
    line.clear();
    int c = 0;
    while ((c = std::getc(file)) != EOF && c != '\n') {
        if (line.size() == kLongest)
            throw Failure(kNoInput, Phrase("{0}: has a line of more than {1} MiB; that is not such a file.", name,
                                           kLongest >> 20));
        line += static_cast<char>(c);
    }
    CheckStop();
    if (c == EOF && std::ferror(file) != 0)
        throw Failure(kNoInput, Phrase("{0}: cannot be read: {1}.", name, SystemError(errno)));
    return c != EOF || !line.empty();
}

bool IsSymbolLibrary(const fs::path& path) {
    constexpr std::size_t kLargest = 64u << 20;
    const std::string bytes = ReadWholeFile(path, kLargest);
    if (bytes.find('\0') != std::string::npos) return false;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t next = bytes.find('\n', at);
        const std::string_view line = std::string_view(bytes).substr(at, next - at);
        int code = 0;
        const std::size_t digits = std::min(line.find_first_not_of("0123456789", 1), line.size());
        if (line.size() > 1 && line[0] == '*' &&
            (line[1] == '$' || (digits > 1 && digits < line.size() && ReadWhole(line.substr(1, digits - 1), code) &&
                                code > 0 && code < 1000)))
            return true;
        if (next == std::string::npos) break;
        at = next + 1;
    }
    return false;
}

fs::path PathOf(std::string_view utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

std::string LibraryPath(const fs::path& path) {
    std::string text = files::EscapedPath(path.string());
    std::replace(text.begin(), text.end(), '/', '\\');  // no second byte of a character is a slash
    return text.size() < 256 ? text : std::string();
}

fs::path FromLibraryPath(const char* path) {
    std::string utf8 = gbk::ToUtf8(path != nullptr ? path : "");
    for (char& c : utf8)
        if (c == '\\') c = '/';
    return PathOf(utf8);
}

std::string ToLibraryText(const std::string& utf8, char replacement, int& lost) {
    std::string whole = gbk::FromUtf8(utf8, &lost, replacement);
    if (lost == 0) return whole;
    // Character by character, the accented letters of Western Europe by their plain ones.
    std::string text;
    for (std::size_t i = 0; i < utf8.size();) {
        std::size_t next = i + 1;
        while (next < utf8.size() && (static_cast<unsigned char>(utf8[next]) & 0xC0U) == 0x80) ++next;
        const std::string one = utf8.substr(i, next - i);
        i = next;
        int missing = 0;
        const std::string converted = gbk::FromUtf8(one, &missing, replacement);
        const std::string plain = missing > 0 ? PlainLetter(one) : std::string();
        text += plain.empty() ? converted : plain;
    }
    return text;
}

}  // namespace zm::tool
