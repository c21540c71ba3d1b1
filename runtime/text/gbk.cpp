#include "runtime/text/gbk.h"

#include <array>
#include <cstdint>
#include <memory>

namespace zm::gbk {
namespace {

constexpr int kFirstLead = 0x81;
constexpr int kFirstTrail = 0x40;
constexpr int kTrails = 0xFE - kFirstTrail + 1;
constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kEuro = 0x20AC;  // the one single byte above ASCII, 0x80

// clang-format off
constexpr std::uint16_t kTable[0xFE - kFirstLead + 1][kTrails] = {
#include "runtime/text/gbk_table.inc"
};
// clang-format on

// Unicode to GBK: first byte in the upper half, 0 where there is none.
const std::array<std::uint16_t, 0x10000>& Reverse() {
    static const auto table = [] {
        auto made = std::make_unique<std::array<std::uint16_t, 0x10000>>();
        made->fill(0);
        for (int lead = 0; lead <= 0xFE - kFirstLead; ++lead)
            for (int trail = 0; trail < kTrails; ++trail)
                if (kTable[lead][trail] != 0)
                    (*made)[kTable[lead][trail]] =
                        static_cast<std::uint16_t>((lead + kFirstLead) << 8 | (trail + kFirstTrail));
        return made;
    }();
    return *table;
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        if (c < 0x10000) {
            out += static_cast<char>(0xE0 | c >> 12);
        } else {
            out += static_cast<char>(0xF0 | c >> 18);
            out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        }
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Takes one character off the front. Anything that is no well-formed UTF-8 gives U+FFFD and takes one byte.
char32_t TakeUtf8(std::string_view& text) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = at(0);
    const std::size_t length = first < 0x80 ? 1 : first >> 5 == 6 ? 2 : first >> 4 == 14 ? 3 : first >> 3 == 30 ? 4 : 0;
    if (length == 1) {
        text.remove_prefix(1);
        return first;
    }
    if (length == 0 || text.size() < length) {
        text.remove_prefix(1);
        return kReplacement;
    }
    char32_t c = first & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (at(i) >> 6 != 2) {
            text.remove_prefix(1);
            return kReplacement;
        }
        c = c << 6 | (at(i) & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        text.remove_prefix(1);
        return kReplacement;
    }
    text.remove_prefix(length);
    return c;
}

// Hexadecimal digits between two bytes 0xFF, as path_escape.h writes them. The length of the escape, 0 if it is none.
std::size_t TakeEscape(std::string_view text, std::string& out) {
    constexpr char kMark = '\xFF';
    const std::size_t end = text.find(kMark, 1);
    if (end == std::string_view::npos || end < 3 || end > 8) return 0;
    const bool isByte = text[1] == 'x';
    char32_t c = 0;
    for (std::size_t i = isByte ? 2 : 1; i < end; ++i) {
        const char d = text[i];
        const int digit = d >= '0' && d <= '9' ? d - '0' : d >= 'A' && d <= 'F' ? d - 'A' + 10 : -1;
        if (digit < 0) return 0;
        c = c << 4 | static_cast<char32_t>(digit);
    }
    if (isByte && c > 0xFF) return 0;
    if (!isByte && (c > 0x10FFFF || c < 0x80)) return 0;
    if (isByte)
        out += static_cast<char>(c);
    else
        AppendUtf8(out, c);
    return end + 1;
}

}  // namespace

std::string ToUtf8(std::string_view gbk, int* invalid) {
    std::string out;
    out.reserve(gbk.size() * 3 / 2);
    int bad = 0;
    for (std::size_t i = 0; i < gbk.size(); ++i) {
        const auto b = static_cast<unsigned char>(gbk[i]);
        if (b < 0x80) {
            out += gbk[i];
            continue;
        }
        if (b == 0x80) {
            AppendUtf8(out, kEuro);
            continue;
        }
        if (b == 0xFF) {
            if (const std::size_t length = TakeEscape(gbk.substr(i), out)) {
                i += length - 1;
                continue;
            }
        }
        const int trail = i + 1 < gbk.size() ? static_cast<unsigned char>(gbk[i + 1]) : 0;
        const char32_t c =
            b <= 0xFE && trail >= kFirstTrail && trail <= 0xFE ? kTable[b - kFirstLead][trail - kFirstTrail] : 0;
        if (c != 0) {
            AppendUtf8(out, c);
            ++i;
        } else {
            AppendUtf8(out, kReplacement);
            ++bad;
        }
    }
    if (invalid != nullptr) *invalid = bad;
    return out;
}

std::string FromUtf8(std::string_view utf8, int* lost, char replacement) {
    std::string out;
    out.reserve(utf8.size());
    int bad = 0;
    while (!utf8.empty()) {
        const char32_t c = TakeUtf8(utf8);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c == kEuro) {
            out += '\x80';
        } else if (c < 0x10000 && Reverse()[c] != 0) {
            out += static_cast<char>(Reverse()[c] >> 8);
            out += static_cast<char>(Reverse()[c] & 0xFF);
        } else {
            out += replacement;
            ++bad;
        }
    }
    if (lost != nullptr) *lost = bad;
    return out;
}

}  // namespace zm::gbk
