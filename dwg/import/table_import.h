// Layers, linetypes and text styles of an imported file in the tables of the open drawing.
#pragma once

#include <optional>
#include <vector>

#include "dwg/reader/drawing.h"
#include "dwg/writer/session.h"

namespace zm::dwg {

/// Gives numbers of a file's tables as numbers of the drawing's. What the drawing lacks is added with all its fields;
/// what it has by the same name is taken, and a text style only if it is the same.
class TableImport {
 public:
    TableImport(Session& session, const reader::Drawing& source)
        : m_session(session),
          m_tables(session.tables()),
          m_source(source),
          m_layers(source.layers.size(), kUnmapped),
          m_linetypes(source.linetypes.size(), kUnmapped),
          m_styles(source.styles.size(), kUnmapped) {}

    // Nothing where a table of the drawing is full; limit() then says which. The index is one of the file's table.
    std::optional<int> Layer(std::size_t index);
    std::optional<int> Linetype(std::size_t index);
    std::optional<int> Style(std::size_t index);
    const char* limit() const { return m_limit; }

 private:
    static constexpr int kUnmapped = -1;

    // A new record of this name; null where the table is full.
    std::uint8_t* Add(Table table, const std::string& name, int& slot, const char* limit);
    bool SameStyle(const std::uint8_t* record, const reader::Style& style) const;

    Session& m_session;
    Tables& m_tables;
    const reader::Drawing& m_source;
    std::vector<int> m_layers, m_linetypes, m_styles;
    const char* m_limit = nullptr;
};

/// A name that no record of a table has: the wanted one, or that with a number after.
template <typename Taken>
std::string FreeName(const std::string& wanted, Taken taken) {
    if (!taken(wanted)) return wanted;
    for (int number = 2;; ++number) {
        const std::string end = "_" + std::to_string(number);
        std::string name = wanted.substr(0, kNameSize - 1 - end.size()) + end;
        if (!taken(name)) return name;
    }
}

}  // namespace zm::dwg
