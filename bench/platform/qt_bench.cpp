// Strokes through the drawing context to the Qt device, beside the same strokes handed to QPainter bare.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "bench/symbol/inputs.h"
#include "draw/device.h"
#include "zenromath/draw.h"
#include "zenromath/qt.h"
#include "zenromath/symbol.h"

namespace {

constexpr int kSide = 1000;
constexpr int kStrokes = 20000;

struct Segment {
    int x1, y1, x2, y2;
};

// Strokes of about so many pixels, anywhere on the image; a fixed seed.
std::vector<Segment> Segments(int length) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> place(length, kSide - length - 1);
    std::uniform_int_distribution<int> step(-length, length);
    std::vector<Segment> made;
    for (int i = 0; i < kStrokes; ++i) {
        const int x = place(random);
        const int y = place(random);
        made.push_back({x, y, x + step(random), y + step(random)});
    }
    return made;
}

zm::qt::Rendering RenderingOf(const benchmark::State& run) {
    return run.range(1) == 0 ? zm::qt::Rendering::pixels : zm::qt::Rendering::smooth;
}

// How figures come to the pixels: in units of a pixel, or of a tenth of one with pens of 1.5 pixels and round ends, as
// zenro draws a sheet of 10 pixels a millimetre.
enum View { kPixels, kSmooth, kSheet };

struct Units {
    explicit Units(const benchmark::State& run) : perPixel(run.range(1) == kSheet ? 10 : 1) {}
    int perPixel;
    int pen() const { return perPixel == 1 ? 1 : 15; }
};

// What is drawn: a library, and figure number i of it.
enum Work { kLines, kSymbols, kPatterns };
constexpr int kFigures = 2000;
constexpr char kLibrary[] =
    "*12 G\n1 -1,-1 1,-1\n1 1,-1 1,1\n1 1,1 -1,1\n1 -1,1 -1,-1\n1 -1,-1 1,1\n1 -1,1 1,-1\n1 0,1 0,2\n1 -0.5,2 0.5,2\n"
    "1 -0.5,-1 -0.5,-1.5\n1 0.5,-1 0.5,-1.5\n*42 G\n1 -0.2,0 0.2,0\n1 0,-0.2 0,0.2\n1 -0.2,-0.2 0.2,0.2\n"
    "*80 LC\n+0.6 -0.2 G42 -0.2\n*$\n";
constexpr double kScale = 10.0;  // pixels for a survey unit

// Where figure number i is and how it is turned. Both forms have their inputs ready.
struct Figure {
    double x, y, a;
    double dx, dy;  // a unit in that direction
};

const std::vector<Figure>& Figures() {
    static const std::vector<Figure> figures = [] {
        std::vector<Figure> made;
        for (int i = 0; i < kFigures; ++i) {
            const double a = i * 0.1;
            made.push_back({zm::bench::kEasting + 15.0 + i % 67, zm::bench::kNorthing + 15.0 + i % 71, a, std::cos(a),
                            std::sin(a)});
        }
        return made;
    }();
    return figures;
}

void DrawFigure(Work work, const Figure& figure) {
    const auto& [x, y, a, dx, dy] = figure;
    if (work == kLines) {
        TqDC->line(x, y, x + dx, y + dy);
    } else if (work == kSymbols) {
        insert(x, y, a, 12);
    } else {
        double xs[] = {x, x + 10.0 * dx};
        double ys[] = {y, y + 10.0 * dy};
        PROCESSALL(2, xs, ys, 1, 80);
    }
}

// Lines of 10 px, symbols of ten strokes, patterned lines of 100 px; every other one in another colour. Clipped to the
// view, as applications draw. The stage is made once, as a program reads its symbol library once.
void DrawFigures(zm::bench::Stage& stage, zm::Device* device, const Units& units, Work work,
                 const std::function<void(int)>& next) {
    const int side = kSide * units.perPixel;
    stage.dc().SetViewDrawDC(device, kScale * units.perPixel, zm::bench::kEasting, zm::bench::kNorthing, side, side, 0);
    stage.dc().SetCutArea();
    stage.dc().SetDoCut(1);
    for (int i = 0; i < kFigures; ++i) {
        next(i);
        const CTQPen pen(PS_SOLID, units.pen(), static_cast<DWORD>(i % 2 == 0 ? 0x000000 : 0x0000C0));
        DrawFigure(work, Figures()[static_cast<std::size_t>(i)]);
    }
}

// Keeps the strokes of each figure.
class Keeper : public zm::NullDevice {
 public:
    int Line(const zm::Stroke&, int x1, int y1, int x2, int y2) override {
        figures.back().append(QLineF(x1 + 0.5, y1 + 0.5, x2 + 0.5, y2 + 0.5));
        return 1;
    }
    std::vector<QVector<QLineF>> figures;
};

QImage Paper() {
    zm::qt::EnsureApplication();
    QImage image(kSide, kSide, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

void BM_FiguresToQt(benchmark::State& run) {
    QImage image = Paper();
    zm::bench::Stage stage(kLibrary, zm::bench::kDevice);
    const Units units(run);
    for (auto _ : run) {
        zm::qt::QtDevice device(&image, RenderingOf(run), 1.0, 1.0 / units.perPixel);
        DrawFigures(stage, &device, units, static_cast<Work>(run.range(0)), [](int) {});
        device.Finish();
    }
    run.SetItemsProcessed(run.iterations() * kFigures);
}

// The same strokes, ready in pixels, a call for each figure.
void BM_FiguresByQPainter(benchmark::State& run) {
    QImage image = Paper();
    zm::bench::Stage stage(kLibrary, zm::bench::kDevice);
    Keeper keeper;
    const Units units(run);
    const Qt::PenCapStyle cap = run.range(1) == kSheet ? Qt::RoundCap : Qt::SquareCap;
    DrawFigures(stage, &keeper, units, static_cast<Work>(run.range(0)), [&](int) { keeper.figures.emplace_back(); });
    for (auto _ : run) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, run.range(1) != kPixels);
        painter.scale(1.0 / units.perPixel, 1.0 / units.perPixel);
        for (std::size_t i = 0; i < keeper.figures.size(); ++i) {
            painter.setPen(QPen(i % 2 == 0 ? QColor(0, 0, 0) : QColor(0xC0, 0, 0), units.pen(), Qt::SolidLine, cap,
                                Qt::RoundJoin));
            painter.drawLines(keeper.figures[i]);
        }
    }
    run.SetItemsProcessed(run.iterations() * kFigures);
}

BENCHMARK(BM_FiguresToQt)->ArgNames({"work", "view"})->ArgsProduct({{kLines, kSymbols, kPatterns}, {0, 1, 2}});
BENCHMARK(BM_FiguresByQPainter)->ArgNames({"work", "view"})->ArgsProduct({{kLines, kSymbols, kPatterns}, {0, 1, 2}});

void BM_ContextToQt(benchmark::State& run) {
    zm::qt::EnsureApplication();
    const auto segments = Segments(static_cast<int>(run.range(0)));
    QImage image(kSide, kSide, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (auto _ : run) {
        zm::qt::QtDevice device(&image, RenderingOf(run));
        SelectWorkingTqDC(nullptr);
        CTqDraw context(0);
        context.SetViewDrawDC(&device, 1.0, 0.0, 0.0, kSide, kSide, 0);
        context.SetCutArea();
        context.SetDoCut(1);
        for (const Segment& s : segments)
            context.line(static_cast<double>(s.x1), static_cast<double>(s.y1), static_cast<double>(s.x2),
                         static_cast<double>(s.y2));
        device.Finish();
        SelectWorkingTqDC(nullptr);
    }
    run.SetItemsProcessed(run.iterations() * kStrokes);
}

void BM_QPainterBare(benchmark::State& run) {
    zm::qt::EnsureApplication();
    const auto segments = Segments(static_cast<int>(run.range(0)));
    QImage image(kSide, kSide, QImage::Format_RGB32);
    image.fill(Qt::white);
    QVector<QLineF> lines;
    for (const Segment& s : segments)
        lines.append(QLineF(s.x1 + 0.5, kSide - s.y1 + 0.5, s.x2 + 0.5, kSide - s.y2 + 0.5));
    for (auto _ : run) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, run.range(1) == 1);
        painter.setPen(QPen(Qt::black, 1, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin));
        painter.drawLines(lines);
    }
    run.SetItemsProcessed(run.iterations() * kStrokes);
}

BENCHMARK(BM_ContextToQt)->ArgNames({"length", "smooth"})->ArgsProduct({{10, 100}, {0, 1}});
BENCHMARK(BM_QPainterBare)->ArgNames({"length", "smooth"})->ArgsProduct({{10, 100}, {0, 1}});

}  // namespace
