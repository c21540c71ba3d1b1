// The text of one profile file: sections, keys, values, and everything else as it is.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zm::profile {

/// One change of a profile file.
struct Edit {
    enum class Kind {
        setKey,          // value of a key
        removeKey,       //
        removeSection,   // header, keys and the comments between them
        replaceSection,  // keys and the comments between them by the items in value, each with an end byte
    };
    Kind kind;
    std::string section;
    std::string key;
    std::string value;
};

/// Equality and hash of names: without regard to ASCII case, the second byte of a character as it is.
struct NameEqual {
    bool operator()(std::string_view a, std::string_view b) const;
};
struct NameHash {
    std::size_t operator()(std::string_view name) const;
};

/// A name or value without the blanks at its ends: space, tab, vertical tab, form feed, carriage return.
std::string_view WithoutBlanks(std::string_view text);

/// Can a line be written that reads back as this section, this key?
bool IsSectionName(std::string_view name);
bool IsKeyName(std::string_view name);
/// Can this value stand in a line?
bool IsValue(std::string_view value);

class Text {
 public:
    /// Takes the bytes of a file. Little-endian UTF-16 after its byte order mark is read as well, and stays what it
    /// is.
    explicit Text(std::string bytes);
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    /// The value of the first key of that name in the first section of that name: without blanks around it, with its
    /// quotes. Null data where there is none; a line without equals sign is no key.
    std::string_view Find(std::string_view section, std::string_view key) const;
    bool HasSection(std::string_view section) const { return SectionNumber(section) != kNone; }

    /// Calls visit(name) for each header with a name, in their order.
    template <class Visit>
    void ForEachSection(Visit visit) const {
        for (std::size_t i = 1; i < m_sections.size(); ++i)
            if (!m_sections[i].name.empty()) visit(m_sections[i].name);
    }
    /// Calls visit(key, hasValue, value) for each line of a section that is no comment and not blank.
    template <class Visit>
    void ForEachItem(std::string_view section, Visit visit) const {
        const std::size_t number = SectionNumber(section);
        if (number == kNone) return;
        for (const Line& line : m_sections[number].lines)
            if (line.kind == Line::Kind::key || line.kind == Line::Kind::word)
                visit(line.key, line.kind == Line::Kind::key, line.value);
    }

    /// Carries out a change; false where nothing had to change.
    bool Apply(const Edit& edit);

    /// The bytes of the whole file.
    std::string Bytes() const;
    /// The bytes that it was made of.
    const std::string& source() const { return m_source; }

 private:
    struct Line {
        enum class Kind { other, word, key };  // blanks and comments; no equals sign; key and value
        Kind kind = Kind::other;
        std::string_view raw;    // bytes of the file, line ends included
        std::string_view key;    // GBK
        std::string_view value;  // GBK
    };
    struct Section {
        std::string_view name;
        std::string_view header;  // bytes of the file; empty for what is before the first header
        std::vector<Line> lines;
        mutable std::unordered_map<std::string_view, std::size_t, NameHash, NameEqual> index;  // first key of a name
        mutable bool indexed = false;
    };
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    void ParseBytes();
    void ParseUtf16();
    void AddLine(std::string_view raw, std::string_view text);
    std::size_t SectionNumber(std::string_view name) const;
    const Line* FindKey(const Section& section, std::string_view key) const;
    std::string_view Keep(std::string text);
    std::string_view RawOf(std::string_view text);
    Line NewLine(std::string_view key, std::string_view value, std::string_view lineEnd);
    void FinishLastLine();
    Section& SectionForWriting(std::string_view name);

    bool SetKey(const Edit& edit);
    bool RemoveKey(const Edit& edit);
    bool RemoveSection(const Edit& edit);
    bool ReplaceSection(const Edit& edit);
    static std::size_t EndOfItems(const Section& section);

    std::string m_source;
    std::deque<std::string> m_kept;  // texts that the views lead to and the source does not have
    bool m_utf16 = false;
    std::vector<Section> m_sections;  // the first has no header
    mutable std::unordered_map<std::string_view, std::size_t, NameHash, NameEqual> m_sectionIndex;
    mutable bool m_sectionsIndexed = false;
};

}  // namespace zm::profile
