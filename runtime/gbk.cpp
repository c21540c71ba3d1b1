#include "runtime/gbk.h"

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
#include "runtime/gbk_table.inc"
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
        out += static_cast<char>(0xE0 | c >> 12);
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
