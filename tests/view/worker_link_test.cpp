// What the window makes of a process that works and answers nothing.
#include "tools/view/worker_link.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <cstddef>

#include "tests/view/window_fixture.h"

namespace {

class WorkerLink : public zm::test::WindowTest {};  // in its application

// A process in the place of the one that keeps a map.
constexpr char kBegin[] =
    "import mmap, struct, sys, time\n"
    "memory = mmap.mmap(int(sys.argv[1].partition('=')[2]), 4096)\n"
    "def say(text):\n"
    "    sys.stdout.buffer.write(struct.pack('<I', len(text)) + text)\n"
    "    sys.stdout.buffer.flush()\n"
    "def step():\n"
    "    struct.pack_into('<I', memory, int(sys.argv[2]), time.monotonic_ns() // 1000 & 0xffffffff)\n";
constexpr char kReady[] = "say(b'{\"is\": \"ready\"}')\n";
constexpr int kNoAnswer = 60000;  // milliseconds: silence alone ends nothing here

struct Met {
    int ends = 0;
    qint64 after = 0;  // milliseconds
};

// What a link makes of a process that does this, within so many milliseconds.
Met Watched(const QString& work, int milliseconds) {
    QObject owner;
    zm::view::WorkerLink link("python3", {"-c", kBegin + work},
                              {QString::number(offsetof(zm::tool::SharedHead, steps))}, &owner);
    EXPECT_TRUE(link.valid());
    QSignalSpy ended(&link, &zm::view::WorkerLink::Ended);
    QElapsedTimer time;
    time.start();
    link.Watch(kNoAnswer);
    link.Ask({{"do", "identify"}}, [](const QJsonObject&) {});
    (void)QTest::qWaitFor([&] { return !ended.isEmpty(); }, milliseconds);
    return {static_cast<int>(ended.size()), time.elapsed()};
}

TEST_F(WorkerLink, AProcessThatWorksWithoutAStepHasEnded) {
    const Met met = Watched(QString(kReady) + "while True: pass", 40000);
    EXPECT_EQ(met.ends, 1);
    EXPECT_GE(met.after, 500);
}

TEST_F(WorkerLink, OneThatMakesStepsIsLeftAlone) {
    EXPECT_EQ(Watched(QString(kReady) + "while True: step()", 4000).ends, 0);
}

TEST_F(WorkerLink, OneThatWaitsIsLeftAlone) {
    EXPECT_EQ(Watched(QString(kReady) + "time.sleep(100)", 3000).ends, 0);
}

TEST_F(WorkerLink, OneThatReadsMayWork) {
    EXPECT_EQ(Watched("while True: pass", 4000).ends, 0);
}

}  // namespace
