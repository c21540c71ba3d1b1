// Features as strokes: pens, symbols, lines, hatches and ornaments on the working context.
#pragma once

#include <array>
#include <set>
#include <string>
#include <vector>

#include "tools/zenro/library_session.h"
#include "tools/zenro/page.h"

namespace zm::tool {

class Painter {
 public:
    Painter(const Page& page, Report& report);

    /// Draws the shapes of a feature that rules put on this level. Returns the number of shapes that were drawn.
    long Draw(const Feature& feature, int level);
    /// The rules that fit a shape, in their order, up to the first that does not say "also".
    static std::vector<const Use*> UsesOf(const Feature& feature, GeometryKind kind);
    /// True if a shape, turned as it is drawn, may touch the sheet.
    bool OnSheet(const Shape& shape) const;
    /// True if a rule fills an area with lines, or with a grid as dense.
    static bool FillsWithLines(const Rule& rule);
    /// A shape as it is drawn: turned by the page's rotation.
    Shape Turned(const Shape& shape) const;

 private:
    void DrawUse(const Shape& shape, const Use& use, const Feature& feature);
    void DrawSymbol(const Shape& shape, const Use& use, int status, const std::string& where);
    void DrawChain(const Chain& chain, int lineType, int code);
    void DrawHatched(const Shape& shape, int code);
    void DrawOrnament(const Chain& chain, bool ring, const Use& use, const std::string& where);
    void PlaceSymbol(const Shape& shape, const Use& use);
    SymbolKind KindOf(int code);

    const Page& m_page;
    Report& m_report;
    Box m_reach;                               // the sheet, widened by what a symbol may reach
    std::vector<double> m_x, m_y;              // room for PROCESSALL, which writes into its arrays
    std::array<signed char, 1000> m_status{};  // of each code; 0 not asked yet, -1 unknown
};

/// An area with its holes as one ring: each hole is reached and left along a seam.
Chain SeamedRing(const Shape& shape);

}  // namespace zm::tool
