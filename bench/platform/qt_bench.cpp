// Strokes through the drawing context to the Qt device, beside the same strokes handed to QPainter bare.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <random>
#include <vector>

#include "draw/device.h"
#include "platform/qt/application.h"
#include "platform/qt/qt_device.h"
#include "zenromath/draw.h"

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
