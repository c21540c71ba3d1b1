// The legend of a sheet: each symbol, line, fill and structure that the sheet uses, with its name.
#pragma once

#include <string>
#include <vector>

#include "tools/kit/report.h"
#include "tools/zenro/map/page.h"
#include "zenromath/config.h"

namespace zm::tool {

/// Gathers what the sheet uses, finds room for it on the paper, and draws it by the painter of the map, so that a sample
/// has the colours, widths and patterns of the sheet.
class Legend {
 public:
    /// Takes up what a rule draws of a kind of geometry. The same figure under the same name is taken once; lettering
    /// alone is not taken.
    void Take(const Rule& rule, GeometryKind kind);

    /// Lays out the legend and widens the page's margins for it: right of the outer frame in one or two columns;
    /// where more are needed, there or below the margins, whichever takes less paper. Nothing without entries. Call once,
    /// after all entries.
    void Lay(Page& page);

    /// Draws it on the working context. The clip area is switched off meanwhile.
    void Draw(const Page& page, TqNoteLayBase& notes, Report& report) const;

    std::size_t size() const { return m_entries.size(); }

 private:
    enum class Form { point, line, area, structure, road };
    struct Entry {
        Rule rule;
        Form form;
        std::string name;      // UTF-8
        std::string lettered;  // UTF-8; in the middle of an area
        double height = 0.0;   // of its row, millimetres
        double x = 0.0,
               y = 0.0;  // left end and middle of its row, millimetres from the legend's top left corner, y down
    };
    static Form FormOf(const Rule& rule, GeometryKind kind);
    /// Puts the entries into columns not higher than this. Returns the height that they take.
    double Fill(double height, double column);
    void DrawSample(const Entry& entry, const Page& page, double x, double y, class Painter& painter,
                    TqNoteLayBase& notes) const;

    std::vector<Entry> m_entries;
    double m_width = 0.0, m_height = 0.0;  // millimetres, the heading included
    bool m_below = false;
    double m_edge = 0.0;  // millimetres from the neat line to its top or left edge
};

}  // namespace zm::tool
