#include "runtime/profile/profile_text.h"

#include <algorithm>
#include <cstdint>

#include "runtime/text/gbk.h"

namespace zm::profile {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\r';
}

bool IsTrail(char c) {
    const auto b = static_cast<unsigned char>(c);
    return b >= 0x40 && b != 0x7F && b != 0xFF;
}

// Calls visit(i) with the place of each byte that is a character by itself, until it returns false.
template <class Visit>
void ForEachSingleByte(std::string_view text, Visit visit) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (gbk::IsLead(text[i]) && i + 1 < text.size() && IsTrail(text[i + 1]))
            ++i;
        else if (!visit(i))
            return;
    }
}

std::size_t FindLast(std::string_view text, char c) {
    std::size_t found = std::string_view::npos;
    ForEachSingleByte(text, [&](std::size_t i) {
        if (text[i] == c) found = i;
        return true;
    });
    return found;
}

// Little-endian UTF-16 without mark to GBK, and back.
std::string GbkOfUtf16(std::string_view bytes) {
    std::string utf8;
    const auto unit = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]) |
                                          static_cast<unsigned char>(bytes[i + 1]) << 8);
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::uint32_t c = unit(i);
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size() && unit(i + 2) >= 0xDC00 && unit(i + 2) < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
            i += 2;
        }
        if (c < 0x80) {
            utf8 += static_cast<char>(c);
        } else if (c < 0x800) {
            utf8 += static_cast<char>(0xC0 | c >> 6);
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            utf8 += static_cast<char>(0xE0 | c >> 12);
            utf8 += static_cast<char>(0x80 | (c >> 6 & 0x3F));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            utf8 += static_cast<char>(0xF0 | c >> 18);
            utf8 += static_cast<char>(0x80 | (c >> 12 & 0x3F));
            utf8 += static_cast<char>(0x80 | (c >> 6 & 0x3F));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return gbk::FromUtf8(utf8);
}

std::string Utf16OfGbk(std::string_view text) {
    const std::string utf8 = gbk::ToUtf8(text);
    std::string bytes;
    // The built-in table has characters of the first plane only, so three bytes are the most.
    for (std::size_t i = 0; i < utf8.size();) {
        const auto byte = [&](std::size_t k) {
            return static_cast<std::uint32_t>(static_cast<unsigned char>(utf8[k]));
        };
        std::uint32_t c = byte(i);
        if (c < 0x80 || i + 1 >= utf8.size()) {
            i += 1;
        } else if (c < 0xE0 || i + 2 >= utf8.size()) {
            c = (c & 0x1F) << 6 | (byte(i + 1) & 0x3F);
            i += 2;
        } else {
            c = (c & 0x0F) << 12 | (byte(i + 1) & 0x3F) << 6 | (byte(i + 2) & 0x3F);
            i += 3;
        }
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

}  // namespace

bool NameEqual::operator()(std::string_view a, std::string_view b) const {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (gbk::IsLead(a[i]) && i + 1 < a.size() && IsTrail(a[i + 1])) {
            if (a[i] != b[i] || a[i + 1] != b[i + 1]) return false;
            ++i;
            continue;
        }
        const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; };
        if (small(a[i]) != small(b[i])) return false;
    }
    return true;
}

std::size_t NameHash::operator()(std::string_view name) const {
    // FNV-1a. Capital letters count as small ones in every place: second bytes only share a few more places so.
    std::uint64_t hash = 14695981039346656037u;
    for (const char c : name) {
        hash ^= static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + 0x20 : c);
        hash *= 1099511628211u;
    }
    return static_cast<std::size_t>(hash);
}

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool IsValue(std::string_view value) {
    return value.find_first_of(std::string_view("\n\0", 2)) == std::string_view::npos;
}

bool IsSectionName(std::string_view name) {
    return IsValue(name);
}

bool IsKeyName(std::string_view name) {
    if (!IsValue(name) || name.find('=') != std::string_view::npos) return false;
    return !name.starts_with(';') && !(name.starts_with('[') && FindLast(name, ']') != std::string_view::npos);
}

Text::Text(std::string bytes) : m_source(std::move(bytes)), m_sections(1) {
    m_utf16 = m_source.starts_with(kUtf16Mark);
    if (m_utf16)
        ParseUtf16();
    else
        ParseBytes();
}

void Text::ParseBytes() {
    const std::string_view all = m_source;
    for (std::size_t begin = 0; begin < all.size();) {
        const std::size_t newLine = all.find('\n', begin);
        const std::size_t end = newLine == std::string_view::npos ? all.size() : newLine + 1;
        const std::string_view raw = all.substr(begin, end - begin);
        AddLine(raw, newLine == std::string_view::npos ? raw : raw.substr(0, raw.size() - 1));
        begin = end;
    }
}

void Text::ParseUtf16() {
    const std::string_view all = m_source;
    for (std::size_t begin = kUtf16Mark.size(); begin < all.size();) {
        std::size_t end = begin;
        bool ended = false;
        while (end + 1 < all.size() && !ended) {
            ended = all[end] == '\n' && all[end + 1] == '\0';
            end += 2;
        }
        if (!ended) end = all.size();
        const std::string_view raw = all.substr(begin, end - begin);
        AddLine(raw, Keep(GbkOfUtf16(ended ? raw.substr(0, raw.size() - 2) : raw)));
        begin = end;
    }
}

// Sorts a line of the file in: text is what it says, in GBK and without its line feed.
void Text::AddLine(std::string_view raw, std::string_view text) {
    text = WithoutBlanks(text.substr(0, text.find('\0')));
    if (text.starts_with('[')) {
        if (const std::size_t close = FindLast(text, ']'); close != std::string_view::npos) {
            Section& section = m_sections.emplace_back();
            section.name = WithoutBlanks(text.substr(1, close - 1));
            section.header = raw;
            return;
        }
    }
    std::vector<Line>& lines = m_sections.back().lines;
    const bool says = !text.empty() && text.front() != ';';
    if (!says && !lines.empty() && lines.back().kind == Line::Kind::other) {
        // Lines that say nothing follow each other in the source and are kept as one: a file may be full of them.
        lines.back().raw = {lines.back().raw.data(), lines.back().raw.size() + raw.size()};
        return;
    }
    Line& line = lines.emplace_back();
    line.raw = raw;
    if (!says) return;
    const std::size_t equals = text.find('=');  // no second byte of a character is an equals sign
    line.kind = equals == std::string_view::npos ? Line::Kind::word : Line::Kind::key;
    line.key = WithoutBlanks(text.substr(0, equals));
    if (equals != std::string_view::npos) line.value = WithoutBlanks(text.substr(equals + 1));
    if (line.value.data() == nullptr) line.value = std::string_view("");
}

std::size_t Text::SectionNumber(std::string_view name) const {
    if (!m_sectionsIndexed) {
        m_sectionIndex.clear();
        // An empty name means the lines before the first header.
        for (std::size_t i = 0; i < m_sections.size(); ++i) m_sectionIndex.try_emplace(m_sections[i].name, i);
        m_sectionsIndexed = true;
    }
    const auto found = m_sectionIndex.find(WithoutBlanks(name));
    return found != m_sectionIndex.end() ? found->second : kNone;
}

const Text::Line* Text::FindKey(const Section& section, std::string_view key) const {
    if (!section.indexed) {
        section.index.clear();
        for (std::size_t i = 0; i < section.lines.size(); ++i)
            if (section.lines[i].kind == Line::Kind::key) section.index.try_emplace(section.lines[i].key, i);
        section.indexed = true;
    }
    const auto found = section.index.find(WithoutBlanks(key));
    return found != section.index.end() ? &section.lines[found->second] : nullptr;
}

std::string_view Text::Find(std::string_view section, std::string_view key) const {
    const std::size_t number = SectionNumber(section);
    if (number == kNone) return {};
    const Line* line = FindKey(m_sections[number], key);
    return line != nullptr ? line->value : std::string_view();
}

std::string_view Text::Keep(std::string text) {
    return m_kept.emplace_back(std::move(text));
}

std::string_view Text::RawOf(std::string_view text) {
    return Keep(m_utf16 ? Utf16OfGbk(text) : std::string(text));
}

Text::Line Text::NewLine(std::string_view key, std::string_view value, std::string_view lineEnd) {
    std::string text(key);
    text += '=';
    text += value;
    const std::string_view kept = Keep(std::move(text));
    Line line;
    line.kind = Line::Kind::key;
    line.key = WithoutBlanks(kept.substr(0, key.size()));
    line.value = WithoutBlanks(kept.substr(key.size() + 1));
    line.raw = m_utf16 || !lineEnd.empty() ? RawOf(std::string(kept) + std::string(lineEnd)) : kept;
    return line;
}

// Gives the last line of the file the line end that it lacks.
void Text::FinishLastLine() {
    Section& section = m_sections.back();
    std::string_view& last = section.lines.empty() ? section.header : section.lines.back().raw;
    if (last.empty()) return;
    const std::string_view end = m_utf16 ? std::string_view("\n\0", 2) : std::string_view("\n");
    if (last.ends_with(end)) return;
    std::string whole(last);
    if (m_utf16 && whole.size() % 2 != 0) whole += '\0';
    whole += m_utf16 ? Utf16OfGbk(kLineEnd) : std::string(kLineEnd);
    last = Keep(std::move(whole));
}

Text::Section& Text::SectionForWriting(std::string_view name) {
    const std::size_t number = SectionNumber(name);
    if (number != kNone) return m_sections[number];
    FinishLastLine();
    Section& section = m_sections.emplace_back();
    const std::string_view kept = Keep("[" + std::string(WithoutBlanks(name)) + "]");
    section.name = kept.substr(1, kept.size() - 2);
    section.header = RawOf(std::string(kept) + std::string(kLineEnd));
    m_sectionsIndexed = false;
    return section;
}

std::size_t Text::EndOfItems(const Section& section) {
    std::size_t end = section.lines.size();
    while (end > 0 && section.lines[end - 1].kind == Line::Kind::other) --end;
    return end;
}

bool Text::Apply(const Edit& edit) {
    switch (edit.kind) {
        case Edit::Kind::setKey:
            return SetKey(edit);
        case Edit::Kind::removeKey:
            return RemoveKey(edit);
        case Edit::Kind::removeSection:
            return RemoveSection(edit);
        case Edit::Kind::replaceSection:
            return ReplaceSection(edit);
    }
    return false;
}

bool Text::SetKey(const Edit& edit) {
    std::string_view value = edit.value;
    while (!value.empty() && IsBlank(value.front())) value.remove_prefix(1);
    const std::string_view key = WithoutBlanks(edit.key);
    Section& section = SectionForWriting(edit.section);
    const Line* const found = FindKey(section, key);
    if (found != nullptr && found->value == WithoutBlanks(value)) return false;
    // A word without equals sign is the key without a value yet.
    const auto isWord = [&](const Line& line) { return line.kind == Line::Kind::word && NameEqual()(line.key, key); };
    const auto place = static_cast<std::size_t>(
        found != nullptr ? found - section.lines.data()
                         : std::find_if(section.lines.begin(), section.lines.end(), isWord) - section.lines.begin());
    if (place < section.lines.size()) {
        Line& line = section.lines[place];
        const bool wasWord = line.kind == Line::Kind::word;
        std::string_view end;
        if (m_utf16)
            end = line.raw.ends_with(std::string_view("\r\0\n\0", 4)) ? kLineEnd
                  : line.raw.ends_with(std::string_view("\n\0", 2))   ? kLineEnd.substr(1)
                                                                      : std::string_view();
        else
            end = line.raw.ends_with(kLineEnd) ? kLineEnd : line.raw.ends_with('\n') ? kLineEnd.substr(1) : "";
        line = NewLine(line.key, value, end.empty() ? kLineEnd : end);
        // The index leads to the name's first bytes, which the source still has; a word was not in it.
        if (wasWord) section.indexed = false;
        return true;
    }
    const std::size_t end = EndOfItems(section);
    if (&section == &m_sections.back() && end == section.lines.size()) FinishLastLine();
    section.lines.insert(section.lines.begin() + static_cast<std::ptrdiff_t>(end), NewLine(key, value, kLineEnd));
    if (section.indexed) section.index.try_emplace(section.lines[end].key, end);
    return true;
}

bool Text::RemoveKey(const Edit& edit) {
    const std::size_t number = SectionNumber(edit.section);
    if (number == kNone) return false;
    Section& section = m_sections[number];
    const Line* found = FindKey(section, edit.key);
    if (found == nullptr) return false;
    section.lines.erase(section.lines.begin() + (found - section.lines.data()));
    section.indexed = false;
    return true;
}

bool Text::RemoveSection(const Edit& edit) {
    const std::size_t number = SectionNumber(edit.section);
    if (number == kNone) return false;
    Section& section = m_sections[number];
    // Comments after the last key belong, as a rule, to the section that follows.
    section.lines.erase(section.lines.begin(),
                        section.lines.begin() + static_cast<std::ptrdiff_t>(EndOfItems(section)));
    section.indexed = false;
    if (number == 0) return true;
    std::vector<Line>& before = m_sections[number - 1].lines;
    before.insert(before.end(), section.lines.begin(), section.lines.end());
    m_sections.erase(m_sections.begin() + static_cast<std::ptrdiff_t>(number));
    m_sectionsIndexed = false;
    return true;
}

bool Text::ReplaceSection(const Edit& edit) {
    if (edit.value.empty() && SectionNumber(edit.section) == kNone) return false;
    Section& section = SectionForWriting(edit.section);
    std::vector<Line> lines;
    std::string_view items = edit.value;
    while (!items.empty()) {
        const std::size_t end = std::min(items.find('\0'), items.size());
        const std::string_view text = Keep(std::string(items.substr(0, end)));
        items.remove_prefix(std::min(end + 1, items.size()));
        Line line;
        const std::size_t equals = text.find('=');
        const std::string_view trimmed = WithoutBlanks(text);
        if (!trimmed.empty() && trimmed.front() != ';') {
            line.kind = equals == std::string_view::npos ? Line::Kind::word : Line::Kind::key;
            line.key = WithoutBlanks(text.substr(0, equals));
            line.value =
                equals == std::string_view::npos ? std::string_view("") : WithoutBlanks(text.substr(equals + 1));
        }
        line.raw = RawOf(std::string(text) + std::string(kLineEnd));
        lines.push_back(line);
    }
    if (&section == &m_sections.back()) FinishLastLine();
    const auto end = static_cast<std::ptrdiff_t>(EndOfItems(section));
    const bool same = static_cast<std::size_t>(end) == lines.size() &&
                      std::equal(lines.begin(), lines.end(), section.lines.begin(), [](const Line& a, const Line& b) {
                          return a.kind == b.kind && a.key == b.key && a.value == b.value;
                      });
    if (same) return false;
    section.lines.erase(section.lines.begin(), section.lines.begin() + end);
    section.lines.insert(section.lines.begin(), lines.begin(), lines.end());
    section.indexed = false;
    return true;
}

std::string Text::Bytes() const {
    std::string bytes;
    if (m_utf16) bytes += kUtf16Mark;
    for (const Section& section : m_sections) {
        bytes += section.header;
        for (const Line& line : section.lines) bytes += line.raw;
    }
    return bytes;
}

}  // namespace zm::profile
