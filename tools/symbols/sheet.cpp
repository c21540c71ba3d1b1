// The page of pictures: every symbol of a file drawn by the library, and all ornaments.
#include <algorithm>
#include <array>

#include "runtime/text/numbers.h"
#include "tools/symbols/ornament_table.h"
#include "tools/symbols/picture.h"
#include "tools/symbols/quiet_host.h"
#include "tools/symbols/samples.h"
#include "tools/symbols/sheet_page.h"
#include "tools/symbols/symbols.h"
#include "zenromath/symbol.h"

namespace zm::tool::symbols {

namespace {

constexpr std::array<int, 3> kOrnamentScales = {500, 1000, 2000};
using Points = SamplePoints;

/// The control points as small numbered dots, in the picture's own units.
std::string NumberedPoints(const Points& points, double scale) {
    std::string marks = "<g class=\"n\">";
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double x = points[i].x * 1000.0 / scale * kPixelsPerMm, y = -points[i].y * 1000.0 / scale * kPixelsPerMm;
        marks += numbers::Text("<circle cx=\"%.0f\" cy=\"%.0f\" r=\"25\"/><text x=\"%.0f\" y=\"%.0f\">%d</text>", x, y,
                               x + 45.0, y - 45.0, static_cast<int>(i + 1));
    }
    return marks + "</g>";
}

/// Makes room for the control points and their numbers.
void Include(Picture& picture, const Points& points, double scale) {
    double left = picture.left, right = picture.left + picture.width;
    double top = picture.top, bottom = picture.top - picture.height;
    for (const OrnamentPoint& p : points) {
        const double x = p.x * 1000.0 / scale, y = p.y * 1000.0 / scale;
        left = std::min(left, x - 0.5);
        right = std::max(right, x + 2.2);
        top = std::max(top, y + 2.2);
        bottom = std::min(bottom, y - 0.5);
    }
    picture.left = left;
    picture.top = top;
    picture.width = right - left;
    picture.height = top - bottom;
}

/// What the file calls an ornament: the note of its first code with that number.
std::string OrnamentName(const std::vector<Symbol>& symbols, int number) {
    for (const Symbol& symbol : symbols)
        if (symbol.kind == "Y" && symbol.number == number) return symbol.note;
    return {};
}

class Sheet {
 public:
    Sheet(const SheetOptions& options, PageText& page) : m_options(options), m_page(page) {}

    void AddSymbol(const Symbol& symbol) {
        m_look = m_options.look ? m_options.look(symbol.code) : SheetOptions::Look{m_options.pen, 0};
        if (m_options.look) m_page.SetPenWidth(m_look.width);
        if (symbol.kind == "G")
            AddGraphic(symbol);
        else if (symbol.kind == "Y" && symbol.number >= 1 && symbol.number <= kOrnaments)
            AddOrnamentCode(symbol);
        else
            AddAlong(symbol, symbol.kind == "H" ? AreaSample() : LineSample());
    }

    void AddOrnament(const Ornament& ornament, const std::string& name) {
        m_look = {m_options.pen, 0};
        const Points points = Centred(ornament.example);
        std::string pictures;
        for (const int scale : kOrnamentScales)
            pictures +=
                "<div class=\"m m" + std::to_string(scale) + "\">" +
                OrnamentSvg(points, scale,
                            [&](PointArrays& a) {
                                drawcode(ornament.number, 0, a.n, a.x.data(), a.y.data(), static_cast<double>(scale));
                            }) +
                "</div>";
        m_page.AddOrnament(ornament.number, name, OrnamentDraws(ornament.number), pictures);
    }

 private:
    std::string OrnamentSvg(const Points& points, double scale, const std::function<void(PointArrays&)>& draw) {
        Picture picture = TakePicture(
            scale, m_look.width,
            [&] {
                PointArrays arrays(points);
                draw(arrays);
            },
            m_look.color);
        m_message = picture.message;
        Include(picture, points, scale);
        return SvgElement(picture, NumberedPoints(points, scale));
    }

    void AddGraphic(const Symbol& symbol) {
        const Picture picture = TakePicture(
            kSampleScale, m_look.width, [&] { insert(0.0, 0.0, 0.0, symbol.code); }, m_look.color);
        m_page.AddSymbol(symbol, SvgElement(picture, "<path class=\"o\" d=\"M-30 0H30M0-30V30\"/>"), picture.message);
    }

    void AddAlong(const Symbol& symbol, const Points& points) {
        const auto draw = [&] {
            PointArrays arrays(points);
            PROCESSALL(arrays.n, arrays.x.data(), arrays.y.data(), 1, symbol.code);
        };
        const Picture picture = TakePicture(kSampleScale, m_look.width, draw, m_look.color);
        m_page.AddSymbol(symbol, SvgElement(picture, ""), picture.message);
    }

    void AddOrnamentCode(const Symbol& symbol) {
        const Points points = Centred(Ornaments()[static_cast<std::size_t>(symbol.number) - 1].example);
        const std::string svg = OrnamentSvg(
            points, kSampleScale, [&](PointArrays& a) { PROCESSALL(a.n, a.x.data(), a.y.data(), 1, symbol.code); });
        m_page.AddSymbol(symbol, svg, m_message);
    }

    const SheetOptions& m_options;
    SheetOptions::Look m_look{};
    PageText& m_page;
    std::string m_message;
};

}  // namespace

std::string SheetPage(const char* path, const SheetOptions& options) {
    if (!CanRead(path)) return {};
    const std::vector<Symbol> symbols = ReadSymbols(path);
    {
        const QuietHost quiet;
        TsymbolInit(path);
    }
    PageText page(options.title, symbols.size());
    Sheet sheet(options, page);
    for (const Symbol& symbol : symbols) sheet.AddSymbol(symbol);
    page.BeginOrnaments();
    for (const Ornament& ornament : Ornaments()) sheet.AddOrnament(ornament, OrnamentName(symbols, ornament.number));
    return page.Finish();
}

}  // namespace zm::tool::symbols
