// What the window takes its time for, printed: the answer to the hand, the gaps of its loop, the end of a drawing that is
// not wanted any more, a killed process. ZM_FIGURES_LINES is the number of lines in view, 5000 without it. The bounds are
// those of a slow machine; what is asked of a quiet one is in docs/view.md.
#include <signal.h>

#include <QElapsedTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/view/window_fixture.h"

namespace {

using namespace zm::test;
using nlohmann::json;

class WindowFigures : public WindowTest {
 protected:
    // Lines of four vertices, 4000 on a square kilometre, as in a town.
    QString Lines() const {
        const char* wanted = std::getenv("ZM_FIGURES_LINES");
        const int count = wanted != nullptr ? std::atoi(wanted) : 5000;
        const double side = 1000.0 * std::sqrt(count / 4000.0);
        std::uint32_t seed = 7;
        const auto next = [&](double range) {
            seed = seed * 1664525u + 1013904223u;
            return range * (seed >> 8) / 16777216.0;
        };
        std::ostringstream text;
        text.precision(12);
        for (int i = 0; i < count; ++i) {
            const double x = kTownX + next(side), y = kTownY + next(side);
            if (i > 0) text << ",";
            std::ostringstream points;
            points.precision(12);
            for (int k = 0; k < 4; ++k) points << (k > 0 ? ",[" : "[") << x + 12 * k << "," << y + next(30) << "]";
            text << LineFeature(points.str(), "\"kind\":\"road\"");
        }
        return QString::fromStdString(zenro.File("lines.geojson", Collection(text.str())));
    }
    std::vector<json> Log() const {
        std::vector<json> lines;
        std::istringstream in(ReadFile(zenro / "log"));
        for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line, nullptr, false));
        return lines;
    }
    void Wheel(int turn) {
        const QPointF at(300, 200);
        QWheelEvent event(at, map().mapToGlobal(at), {}, {0, turn}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&map(), &event);
    }
};

TEST_F(WindowFigures, TheHandIsAnsweredWhileTheMapIsDrawn) {
    Open({Lines()});
    QElapsedTimer gap;
    gap.start();
    qint64 longest = 0, slowest = 0;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &beat, [&] { longest = std::max(longest, gap.restart()); });
    beat.start(2);
    for (int i = 0; i < 24; ++i) {
        QTest::qWait(60);
        QElapsedTimer answer;
        answer.start();
        Wheel(i % 4 < 2 ? 120 : -120);
        map().repaint();
        slowest = std::max(slowest, answer.elapsed());
    }
    WaitForPicture();
    beat.stop();
    std::map<int, double> asked;
    double cancel = 0.0, painted = 0.0;
    int ended = 0;
    for (const json& line : Log()) {
        if (line.contains("asked")) asked[line.at("asked")] = line.at("ms");
        if (line.value("is", "") != "painted" || !line.contains("number")) continue;
        const int number = line.at("number");
        if (line.at("whole").get<bool>()) painted = std::max(painted, line.at("seconds").get<double>());
        if (line.at("whole").get<bool>() || asked.count(number + 1) == 0) continue;
        ++ended;
        cancel = std::max(cancel, line.at("ms").get<double>() - asked[number + 1]);
    }
    std::printf(
        "a wheel step is answered within %lld ms; longest gap of the loop %lld ms; %d drawings ended early, "
        "within %.1f ms; the longest whole one %.2f s\n",
        static_cast<long long>(slowest), static_cast<long long>(longest), ended, cancel, painted);
    EXPECT_LT(slowest, 500);
    EXPECT_LT(longest, 1000);
    EXPECT_LT(cancel, 1000.0);
}

TEST_F(WindowFigures, AKilledProcessIsBack) {
    Open({Lines()});
    int worker = 0;
    for (const json& line : Log())
        if (line.contains("worker")) worker = line.at("worker");
    QElapsedTimer time;
    time.start();
    ASSERT_EQ(kill(worker, SIGKILL), 0);
    ASSERT_TRUE(WaitFor([&] { return !map().isWhole(); }));
    EXPECT_GT(Dark(), 100);  // the last picture stays
    WaitForPicture();
    std::printf("a killed process is back, its picture whole, after %lld ms\n", static_cast<long long>(time.elapsed()));
    EXPECT_LT(time.elapsed(), 30000);
}

}  // namespace
