// Symbols and patterned lines on an image of 1,000 by 1,000 pixels: ours on a device of the benchmark's own, for the limit of
// the strokes alone, and QPainter where it is installed. The shipped device is measured in bench/platform. No antialiasing.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "bench/symbol/inputs.h"
#ifdef ZM_HAVE_QT
#include <QImage>
#include <QPainter>
#include <QPen>
#endif

namespace {

using namespace zm::bench;

constexpr int kSize = 1000;

// Where the lower left corner of the view lies: about the origin and farther out in a local system, or where a
// projection has it.
struct Corner {
    double x, y;
};
Corner CornerOf(const benchmark::State& run) {
    const auto easting = static_cast<double>(run.range(0));
    return {easting, easting == kEasting ? kNorthing : easting};
}

// Bresenham on 32-bit pixels; the last pixel of a stroke is left out.
class ImageDevice : public zm::NullDevice {
 public:
    int Line(const zm::Stroke& stroke, int x1, int y1, int x2, int y2) override {
        if (((x1 | y1 | x2 | y2) & ~1023) != 0 || x1 >= kSize || x2 >= kSize || y1 >= kSize || y2 >= kSize) return 1;
        const int dx = std::abs(x2 - x1), dy = std::abs(y2 - y1);
        const int sx = x1 < x2 ? 1 : -1, sy = y1 < y2 ? kSize : -kSize;
        std::uint32_t* at = m_pixels.data() + y1 * kSize + x1;
        int error = dx - dy;
        for (int left = std::max(dx, dy); left > 0; --left) {
            *at = stroke.color;
            const int twice = 2 * error;
            if (twice > -dy) {
                error -= dy;
                at += sx;
            }
            if (twice < dx) {
                error += dx;
                at += sy;
            }
        }
        return 1;
    }
    int Lines(const zm::Stroke& stroke, const POINT* ends, int count) override {
        for (const POINT* last = ends + 2 * static_cast<std::ptrdiff_t>(count); ends != last; ends += 2)
            ImageDevice::Line(stroke, ends[0].x, ends[0].y, ends[1].x, ends[1].y);
        return count;
    }
    std::uint32_t first() const { return m_pixels[0]; }

 private:
    std::vector<std::uint32_t> m_pixels = std::vector<std::uint32_t>(kSize * kSize);
};

// 100 pixels are ten metres: ten rounds of a dash and a marker of three strokes.
constexpr char kPattern[] =
    "*42 G\n1 -0.2,0 0.2,0\n1 0,-0.2 0,0.2\n1 -0.2,-0.2 0.2,0.2\n*80 LC\n+0.6 -0.2 G42 -0.2\n*$\n";

// Line number i across the image.
struct Ends {
    double x1, y1, x2, y2;
};
Ends LineAt(int i) {
    const double a = i * 0.1;
    const double x = 20.0 + i % 53, y = 1920.0 + i % 59;
    return {x, y, x + 10.0 * std::cos(a), y + 10.0 * std::sin(a)};
}

void BM_ImageSymbols(benchmark::State& run) {
    ImageDevice device;
    const Corner corner = CornerOf(run);
    Stage stage(kTenStrokes, kDevice, &device, corner.x, corner.y);
    int i = 0;
    for (auto _ : run) {
        const Ends at = LineAt(i);
        insert(corner.x + at.x1, corner.y + at.y1, i * 0.1, 12);
        i = i == 100000 ? 0 : i + 1;
    }
    run.SetItemsProcessed(run.iterations() * 10);  // strokes
    benchmark::DoNotOptimize(device.first());
}
BENCHMARK(BM_ImageSymbols)->ArgName("easting")->Arg(0)->Arg(1000)->Arg(static_cast<int>(kEasting));

void BM_ImagePatternLines(benchmark::State& run) {
    ImageDevice device;
    const Corner corner = CornerOf(run);
    Stage stage(kPattern, kDevice, &device, corner.x, corner.y);
    int i = 0;
    for (auto _ : run) {
        const Ends at = LineAt(i);
        double x[] = {corner.x + at.x1, corner.x + at.x2};
        double y[] = {corner.y + at.y1, corner.y + at.y2};
        PROCESSALL(2, x, y, 1, 80);
        i = i == 100000 ? 0 : i + 1;
    }
    run.SetItemsProcessed(run.iterations());  // lines
    benchmark::DoNotOptimize(device.first());
}
BENCHMARK(BM_ImagePatternLines)->ArgName("easting")->Arg(0)->Arg(1000)->Arg(static_cast<int>(kEasting));

// The strokes of the same line, transformed and handed to the device in a plain loop: one by one or in a run.
void BM_ImagePatternLimit(benchmark::State& run) {
    const bool inRuns = run.range(0) != 0;
    ImageDevice image;
    zm::Device& device = image;
    const zm::Stroke pen;
    POINT ends[80];
    constexpr double kMarker[] = {-0.2, 0, 0.2, 0, 0, -0.2, 0, 0.2, -0.2, -0.2, 0.2, 0.2};
    const auto px = [](double v) { return static_cast<int>(v * 10.0); };
    const auto py = [](double v) { return static_cast<int>(20000.0 - v * 10.0); };
    int i = 0;
    for (auto _ : run) {
        const Ends at = LineAt(i);
        const double c = (at.x2 - at.x1) / 10.0, s = (at.y2 - at.y1) / 10.0;
        POINT* next = ends;
        const auto stroke = [&](int x1, int y1, int x2, int y2) {
            if (!inRuns) {
                device.Line(pen, x1, y1, x2, y2);
                return;
            }
            *next++ = {x1, y1};
            *next++ = {x2, y2};
        };
        for (int k = 0; k < 10; ++k) {
            const double x = at.x1 + k * c, y = at.y1 + k * s, mx = x + 0.8 * c, my = y + 0.8 * s;
            stroke(px(x), py(y), px(x + 0.6 * c), py(y + 0.6 * s));
            for (int m = 0; m < 12; m += 4) {
                const double* v = kMarker + m;
                stroke(px(mx + v[0] * c - v[1] * s), py(my + v[1] * c + v[0] * s), px(mx + v[2] * c - v[3] * s),
                       py(my + v[3] * c + v[2] * s));
            }
        }
        if (inRuns) device.Lines(pen, ends, 40);
        i = i == 100000 ? 0 : i + 1;
    }
    run.SetItemsProcessed(run.iterations());
    benchmark::DoNotOptimize(image.first());
}
BENCHMARK(BM_ImagePatternLimit)->ArgName("runs")->Arg(0)->Arg(1);

#ifdef ZM_HAVE_QT
void BM_QPainterSymbols(benchmark::State& run) {
    QImage image(kSize, kSize, QImage::Format_RGB32);
    QPainter painter(&image);
    const QLineF strokes[] = {{-10, -10, 10, -10}, {10, -10, 10, 10},  {10, 10, -10, 10}, {-10, 10, -10, -10},
                              {-10, -10, 10, 10},  {-10, 10, 10, -10}, {0, 10, 0, 20},    {-5, 20, 5, 20},
                              {-5, -10, -5, -15},  {5, -10, 5, -15}};
    int i = 0;
    for (auto _ : run) {
        const Ends at = LineAt(i);
        painter.resetTransform();
        painter.translate(at.x1 * 10.0, 20000.0 - at.y1 * 10.0);
        painter.rotate(-i * 5.729577951308232);
        painter.drawLines(strokes, 10);
        i = i == 100000 ? 0 : i + 1;
    }
    run.SetItemsProcessed(run.iterations() * 10);
}
BENCHMARK(BM_QPainterSymbols);

void BM_QPainterPatternLines(benchmark::State& run) {
    QImage image(kSize, kSize, QImage::Format_RGB32);
    QPainter painter(&image);
    QPen dashes(Qt::black, 1.0);
    dashes.setDashPattern({6.0, 4.0});
    const QPen solid(Qt::black, 1.0);
    int i = 0;
    for (auto _ : run) {
        const Ends at = LineAt(i);
        const QLineF line(at.x1 * 10.0, 20000.0 - at.y1 * 10.0, at.x2 * 10.0, 20000.0 - at.y2 * 10.0);
        painter.setPen(dashes);
        painter.drawLine(line);
        painter.setPen(solid);
        QLineF markers[30];
        const double c = line.dx() / 50.0, s = line.dy() / 50.0;  // two pixels along
        for (int k = 0; k < 10; ++k) {
            const QPointF m = line.pointAt((k + 0.8) / 10.0);
            markers[3 * k] = {m.x() - c, m.y() - s, m.x() + c, m.y() + s};
            markers[3 * k + 1] = {m.x() + s, m.y() - c, m.x() - s, m.y() + c};
            markers[3 * k + 2] = {m.x() - c + s, m.y() - s - c, m.x() + c - s, m.y() + s + c};
        }
        painter.drawLines(markers, 30);
        i = i == 100000 ? 0 : i + 1;
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_QPainterPatternLines);
#endif

}  // namespace
