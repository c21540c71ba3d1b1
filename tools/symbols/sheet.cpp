// The page of pictures: every symbol of a file drawn by the library, and all ornaments.
#include <algorithm>
#include <array>

#include "runtime/numbers.h"
#include "tools/symbols/ornament_table.h"
#include "tools/symbols/picture.h"
#include "tools/symbols/quiet_host.h"
#include "tools/symbols/sheet_page.h"
#include "tools/symbols/symbols.h"
#include "zenromath/symbol.h"

namespace zm::tools::symbols {

namespace {

constexpr double kSheetScale = 1000.0;  // at which the pictures of codes are taken: metres are millimetres
constexpr std::array<int, 3> kOrnamentScales = {500, 1000, 2000};
constexpr int kRoom = 4000;  // points that PROCESSALL may make of a line

using Points = std::vector<OrnamentPoint>;

/// A line with a bend to each side, 62 mm wide on the page. Its lengths are no whole numbers: where a token is exactly
/// as long as what is left of a segment, that rest stays undrawn.
const Points kLineSample = {{-31, -4}, {-2.63, -4}, {9.21, 4}, {31, 4}};
/// An area with a notch, 44 by 30 mm on the page, closed.
const Points kAreaSample = {{-22, -15}, {22, -15}, {22, 15}, {4, 15}, {4, 7}, {-8, 7}, {-8, 15}, {-22, 15}, {-22, -15}};

/// Points about their middle, so that any size stands in the middle of the stage.
Points Centred(const Points& points) {
    double left = points[0].x, right = left, low = points[0].y, high = low;
    for (const OrnamentPoint& p : points) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        low = std::min(low, p.y);
        high = std::max(high, p.y);
    }
    Points centred;
    for (const OrnamentPoint& p : points) centred.push_back({p.x - (left + right) / 2.0, p.y - (low + high) / 2.0});
    return centred;
}

/// Points as the interface takes them, with room for what it makes of them.
struct Arrays {
    explicit Arrays(const Points& points) : n(static_cast<int>(points.size())), x(kRoom), y(kRoom) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            x[i] = points[i].x;
            y[i] = points[i].y;
        }
    }
    int n;
    std::vector<double> x, y;
};

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
        if (symbol.kind == "G")
            AddGraphic(symbol);
        else if (symbol.kind == "Y" && symbol.number >= 1 && symbol.number <= kOrnaments)
            AddOrnamentCode(symbol);
        else
            AddAlong(symbol, symbol.kind == "H" ? kAreaSample : kLineSample);
    }

    void AddOrnament(const Ornament& ornament, const std::string& name) {
        const Points points = Centred(ornament.example);
        std::string pictures;
        for (const int scale : kOrnamentScales)
            pictures +=
                "<div class=\"m m" + std::to_string(scale) + "\">" +
                OrnamentSvg(points, scale,
                            [&](Arrays& a) {
                                drawcode(ornament.number, 0, a.n, a.x.data(), a.y.data(), static_cast<double>(scale));
                            }) +
                "</div>";
        m_page.AddOrnament(ornament.number, name, OrnamentDraws(ornament.number), pictures);
    }

 private:
    std::string OrnamentSvg(const Points& points, double scale, const std::function<void(Arrays&)>& draw) {
        Picture picture = TakePicture(scale, m_options.pen, [&] {
            Arrays arrays(points);
            draw(arrays);
        });
        m_message = picture.message;
        Include(picture, points, scale);
        return SvgElement(picture, NumberedPoints(points, scale));
    }

    void AddGraphic(const Symbol& symbol) {
        const Picture picture = TakePicture(kSheetScale, m_options.pen, [&] { insert(0.0, 0.0, 0.0, symbol.code); });
        m_page.AddSymbol(symbol, SvgElement(picture, "<path class=\"o\" d=\"M-30 0H30M0-30V30\"/>"), picture.message);
    }

    void AddAlong(const Symbol& symbol, const Points& points) {
        const Picture picture = TakePicture(kSheetScale, m_options.pen, [&] {
            Arrays arrays(points);
            PROCESSALL(arrays.n, arrays.x.data(), arrays.y.data(), 1, symbol.code);
        });
        m_page.AddSymbol(symbol, SvgElement(picture, ""), picture.message);
    }

    void AddOrnamentCode(const Symbol& symbol) {
        const Points points = Centred(Ornaments()[static_cast<std::size_t>(symbol.number) - 1].example);
        const std::string svg = OrnamentSvg(
            points, kSheetScale, [&](Arrays& a) { PROCESSALL(a.n, a.x.data(), a.y.data(), 1, symbol.code); });
        m_page.AddSymbol(symbol, svg, m_message);
    }

    const SheetOptions& m_options;
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

}  // namespace zm::tools::symbols
