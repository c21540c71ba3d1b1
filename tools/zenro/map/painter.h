// Features as strokes: pens, symbols, lines, hatches and ornaments on the working context.
#pragma once

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/zenro/map/area_fill.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/map/map_masks.h"
#include "tools/zenro/map/page.h"

namespace zm::tool {

struct LetteredLine;

class Painter {
 public:
    /// \param masks  what contours and fills give way to; kept by the caller
    Painter(const Page& page, Report& report, const MapMasks& masks);

    /// Draws the shapes of a feature that rules put on this level. Returns the number of shapes that were drawn.
    long Draw(const Feature& feature, int level);
    /// Draws the edges of the roads of a level, and the slope ticks once.
    void DrawRoads(int level);
    void DrawSlopeTicks();
    /// Fills the sea.
    void DrawSea();
    /// Draws a shape by a rule, wherever it lies: a sample in a legend.
    void DrawSample(const Shape& shape, const Rule& rule);
    /// True if a shape, turned as it is drawn, may touch the sheet.
    bool OnSheet(const Shape& shape) const;
    /// True if a shape itself, and not its box alone, comes so near.
    bool Meets(const Shape& shape) const { return Touches(shape, m_reach); }
    /// True if a rule fills an area with lines, or with a grid as dense.
    bool FillsWithLines(const Rule& rule);
    /// From now on patterns are plain lines, and fills their outlines; symbols are strokes of so many ground metres: for a
    /// picture whose pixels are larger than what symbols are made of. 0: as the symbols have it.
    void DrawPlainly(double metres) { m_plain = metres; }
    /// A shape as it is drawn: turned by the page's rotation.
    Shape Turned(const Shape& shape) const;

 private:
    void DrawUse(const Shape& shape, const Use& use, const Feature& feature);
    void DrawSymbol(const Shape& shape, const Use& use, int status, const std::string& where);
    void DrawChain(const Chain& chain, int lineType, int code);
    bool IsTooFine(int code);
    bool IsTooFine(const FillPart& part, int code);
    void LayChain(const Chain& chain, int lineType, int code);
    void DrawHatched(const Shape& shape, const Rule& rule);
    void DrawOutline(const Shape& shape, const Use& use);
    void DrawOpenParts(const Chain& chain, const Use& use, int code);
    void DrawLettered(const Chain& chain, const LetteredLine& by);
    void DrawSlope(const Slope& slope, int code);
    void DrawContour(const Chain& chain, const Use& use);
    void DrawLandUseLimit(const Chain& ring);
    const FillForm& FormOf(int code);
    void DrawOrnament(const Chain& chain, bool ring, const Use& use, const std::string& where);
    void PlaceSymbol(const Shape& shape, const Use& use);
    SymbolKind KindOf(int code);

    const Page& m_page;
    double m_plain = 0.0;
    const MapMasks& m_masks;
    std::map<int, FillForm> m_forms;
    std::map<int, bool> m_tooFine;                // patterns
    std::set<std::array<long long, 4>> m_limits;  // pieces of limits that are drawn, in centimetres
    Report& m_report;
    Box m_reach;                               // the sheet, widened by what a symbol may reach
    std::vector<double> m_x, m_y;              // room for PROCESSALL, which writes into its arrays
    std::array<signed char, 1000> m_status{};  // of each code; 0 not asked yet, -1 unknown
};

}  // namespace zm::tool
