// The window of symbols: a person who looks for a symbol, measures it, mends its text, saves and compares.
#include <signal.h>

#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QWheelEvent>
#include <cmath>

#include "tests/view/window_fixture.h"
#include "tools/view/symbol_window.h"

namespace {

using namespace zm::test;
using zm::view::SymbolPane;
using zm::view::SymbolText;
using zm::view::SymbolWindow;

constexpr char kLibrary[] =
    "# a remark\n"
    "*17 G \"tree\"\n2 -2,-2 2,-2 2,2 -2,2 -2,-2\n"
    "*30 L 4\n"
    "*250 LC D0 A0 \"road\"\n+5 -2 G17\n"
    "*$\n";

class Symbols : public WindowTest {
 protected:
    void SetUp() override {
        WindowTest::SetUp();
        library = QString::fromStdString(zenro.File("own.dat", kLibrary));
    }
    void TearDown() override {
        m_symbols.reset();
        WindowTest::TearDown();
    }
    SymbolWindow& OpenLibrary(const QString& file = {}, int code = 17) {
        zm::view::ViewJob job;
        job.program = program;
        job.inputs << (file.isEmpty() ? library : file);
        job.options << "--code=" + QString::number(code);
        m_symbols = std::make_unique<SymbolWindow>(job);
        m_symbols->show();
        EXPECT_TRUE(WaitFor([this] { return m_symbols->isWhole(); }));
        return *m_symbols;
    }
    template <class Part>
    Part& The(const char* name) const {
        return *m_symbols->findChild<Part*>(name);
    }
    SymbolText& Text() const { return The<SymbolText>("text"); }
    bool WaitWhole() const {
        return WaitFor([this] { return m_symbols->isWhole(); });
    }
    void Write(const QString& text) const {
        Text().selectAll();
        const QStringList lines = text.split('\n');
        for (const QString& line : lines) {
            QTest::keyClicks(&Text(), line);
            if (&line != &lines.back()) QTest::keyClick(&Text(), Qt::Key_Return);
        }
        EXPECT_TRUE(WaitWhole());
    }
    QString Remarks() const {
        QStringList lines;
        const auto& list = The<QListWidget>("remarks");
        for (int i = 0; i < list.count(); ++i) lines << list.item(i)->text();
        return lines.join('\n');
    }
    QStringList Codes() const {
        QStringList codes;
        const auto& list = The<QTreeWidget>("codes");
        for (int i = 0; i < list.topLevelItemCount(); ++i)
            if (!list.topLevelItem(i)->isHidden()) codes << list.topLevelItem(i)->text(0);
        return codes;
    }
    // Dark pixels of a pane in a box of the paper, millimetres.
    static long Dark(SymbolPane& pane, QRectF paper) {
        const QImage image = pane.grab().toImage();
        const QRect box = QRectF(pane.ToScreen(paper.topLeft()), pane.ToScreen(paper.bottomRight()))
                              .normalized()
                              .toRect()
                              .intersected(image.rect());
        long dark = 0;
        for (int y = box.top(); y <= box.bottom(); ++y)
            for (int x = box.left(); x <= box.right(); ++x) dark += qGray(image.pixel(x, y)) < 200 ? 1 : 0;
        return dark;
    }
    bool SaveDialog(const char* action, const QString& file) const {
        return InDialogAfter<QFileDialog>([&] { m_symbols->findChild<QAction*>(action)->trigger(); },
                                          [&](QFileDialog& dialog) {
                                              dialog.findChild<QLineEdit*>()->setText(file);
                                              QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
                                          });
    }
    void CloseLeavingAll() {
        InDialogAfter<QMessageBox>([this] { m_symbols->close(); },
                                   [](QMessageBox& box) { box.button(QMessageBox::Discard)->click(); });
    }
    std::string Saved(const char* name) const { return ReadFile(zenro / name); }

    QString library;
    std::unique_ptr<SymbolWindow> m_symbols;
};

TEST_F(Symbols, CodesAreFoundByNoteKindAndNumber) {
    OpenLibrary();
    auto& search = The<QLineEdit>("symbolSearch");
    EXPECT_EQ(Codes(), (QStringList{"17", "30", "250"}));
    QTest::keyClicks(&search, "ro");
    EXPECT_EQ(Codes(), QStringList{"250"});
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(m_symbols->code(), 250);
    EXPECT_EQ(Text().toPlainText(), "*250 LC D0 A0 \"road\"\n+5 -2 G17\n");
    search.clear();
    QTest::keyClicks(&search, "g");
    EXPECT_EQ(Codes(), QStringList{"17"});
    search.clear();
    QTest::keyClicks(&search, "3");
    EXPECT_EQ(Codes(), QStringList{"30"});
}

TEST_F(Symbols, TheListStaysAtTheChosenCodeWhileItsPicturesCome) {
    std::string many;
    for (int code = 1; code <= 60; ++code) many += "*" + std::to_string(code) + " G\n2 0,0 1,1\n";
    const QString file = QString::fromStdString(zenro.File("many.dat", many + "*$\n"));
    OpenLibrary(file, 40);
    auto& list = The<QTreeWidget>("codes");
    EXPECT_TRUE(WaitFor([&] { return m_symbols->iconless() == 0; }));
    ASSERT_EQ(list.currentItem()->text(0), "40");
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualItemRect(list.currentItem()).center()));
}

TEST_F(Symbols, ThePicturesInViewAreThereFirstAndTheWindowDoesNotWaitForTheRest) {
    std::string many;
    for (int code = 1; code <= 300; ++code) many += "*" + std::to_string(code) + " G\n2 -1,-1 1,-1 1,1 -1,1 -1,-1\n";
    OpenLibrary(QString::fromStdString(zenro.File("many.dat", many + "*$\n")), 150);
    EXPECT_GT(m_symbols->iconless(), 100U);
    auto& list = The<QTreeWidget>("codes");
    const auto isDrawn = [&](int row) {
        const QImage icon = list.topLevelItem(row)->icon(0).pixmap(list.iconSize()).toImage();
        for (int y = 0; y < icon.height(); ++y)
            for (int x = 0; x < icon.width(); ++x)
                if (qAlpha(icon.pixel(x, y)) > 0 && qGray(icon.pixel(x, y)) < 200) return true;
        return false;
    };
    for (int row = 0; row < 300; ++row)
        EXPECT_TRUE(isDrawn(row) || !list.viewport()->rect().intersects(list.visualItemRect(list.topLevelItem(row))))
            << row;
    EXPECT_FALSE(isDrawn(0));
    // Scrolled to others, those come next; the rest comes by itself.
    list.scrollToItem(list.topLevelItem(299));
    EXPECT_FALSE(m_symbols->isWhole());
    ASSERT_TRUE(WaitWhole());
    EXPECT_TRUE(isDrawn(299));
    EXPECT_GT(m_symbols->iconless(), 0U);
    EXPECT_TRUE(WaitFor([&] { return m_symbols->iconless() == 0; }));
    EXPECT_TRUE(isDrawn(0));
}

TEST_F(Symbols, ASymbolIsSeenByItselfOnALineAndInAnArea) {
    OpenLibrary();
    for (const char* pane : {"alone", "line", "area"}) {
        // The square's edges, and nothing inside it but the line that it is on.
        const QPointF at = QString(pane) == "line" ? QPointF(-5.72, 0) : QPointF(0, 0);
        EXPECT_GT(Dark(The<SymbolPane>(pane), QRectF(at - QPointF(3, 3), QSizeF(6, 6))), 12) << pane;
        if (QString(pane) == "line") continue;
        EXPECT_EQ(Dark(The<SymbolPane>(pane), QRectF(at - QPointF(1.4, 1.4), QSizeF(2.8, 2.8))), 0) << pane;
    }
    // Turned to the slope of the line, a corner of the square is where an upright one has none.
    const double turn = std::atan2(8.0, 9.82), out = 2.0 * std::sqrt(2.0);
    const QPointF corner = QPointF(-5.72, 0) + out * QPointF(std::cos(turn + 0.785398), std::sin(turn + 0.785398));
    EXPECT_GT(Dark(The<SymbolPane>("line"), QRectF(corner - QPointF(0.3, 0.3), QSizeF(0.6, 0.6))), 0);
    EXPECT_GT(Dark(The<SymbolPane>("line"), QRectF(-31, -4.3, 15, 0.6)), 20);  // the line around it
    EXPECT_GT(Dark(The<SymbolPane>("area"), QRectF(-32, -17.3, 30, 0.6)), 20);
}

TEST_F(Symbols, ARulerMeasuresMillimetres) {
    OpenLibrary();
    auto& pane = The<SymbolPane>("alone");
    const auto drag = [&](QPointF from, QPointF to) {
        const QPoint a = pane.ToScreen(from).toPoint(), b = pane.ToScreen(to).toPoint();
        QTest::mousePress(&pane, Qt::LeftButton, Qt::NoModifier, a);
        QMouseEvent move(QEvent::MouseMove, b, pane.mapToGlobal(QPointF(b)), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&pane, &move);
        QTest::mouseRelease(&pane, Qt::LeftButton, Qt::NoModifier, b);
    };
    drag({-2, -2}, {2, -2});
    ASSERT_TRUE(pane.measured());
    EXPECT_NEAR(*pane.measured(), 4.0, 0.06);
    // Closer, and by as much more exact.
    const QPointF at = pane.ToScreen({2, 2});
    for (int i = 0; i < 6; ++i) {
        QWheelEvent wheel(at, pane.mapToGlobal(at), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&pane, &wheel);
    }
    EXPECT_NEAR(pane.ToPaper(at).x(), 2.0, 1e-9);  // about the cursor
    ASSERT_TRUE(WaitWhole());
    EXPECT_GT(Dark(pane, QRectF(1.9, 1.2, 0.2, 0.4)), 5);
    drag({2, 1}, {2, 2});
    EXPECT_NEAR(*pane.measured(), 1.0, 0.02);
}

TEST_F(Symbols, AnEditIsSeenAtOnce) {
    OpenLibrary();
    Text().moveCursor(QTextCursor::End);
    QElapsedTimer time;
    time.start();
    QTest::keyClicks(&Text(), "1 -2,-2 2,2");
    ASSERT_TRUE(WaitFor([&] { return Dark(The<SymbolPane>("alone"), QRectF(-0.5, -0.5, 1, 1)) > 5; }));
    RecordProperty("milliseconds", static_cast<int>(time.elapsed()));
    std::printf("an edit is seen after %lld ms\n", static_cast<long long>(time.elapsed()));
    EXPECT_LT(time.elapsed(), 5000);
    // What draws with it does so too, and is not saved.
    m_symbols->ShowCode(250);
    ASSERT_TRUE(WaitWhole());
    EXPECT_EQ(Saved("own.dat"), kLibrary);
    CloseLeavingAll();
}

TEST_F(Symbols, ChangesThatAreNotSavedKeepTheWindowOpenUnlessTheyAreLeft) {
    OpenLibrary();
    Text().moveCursor(QTextCursor::End);
    QTest::keyClicks(&Text(), "1 0,0 1,1");
    ASSERT_TRUE(WaitWhole());
    EXPECT_TRUE(InDialogAfter<QMessageBox>([this] { m_symbols->close(); },
                                           [](QMessageBox& box) { box.button(QMessageBox::Cancel)->click(); }));
    EXPECT_TRUE(m_symbols->isVisible());
    EXPECT_TRUE(Text().toPlainText().endsWith("1 0,0 1,1"));
    CloseLeavingAll();
    EXPECT_FALSE(m_symbols->isVisible());
    EXPECT_EQ(Saved("own.dat"), kLibrary);
}

TEST_F(Symbols, RemarksAreAtTheirLines) {
    OpenLibrary();
    EXPECT_EQ(Remarks(), "nothing to remark");
    Write("*17 G \"tree\"\n1 0,0 1,1\n7 1,1 2,2\n");
    EXPECT_TRUE(Remarks().startsWith("Line 3: ")) << Remarks().toStdString();
    EXPECT_FALSE(Text().RemarksOf(3).isEmpty());
    EXPECT_TRUE(Text().RemarksOf(2).isEmpty());
    ASSERT_EQ(Text().extraSelections().size(), 1);
    EXPECT_EQ(Text().extraSelections().front().cursor.blockNumber(), 2);
    Write("1 0,0 1,1\n");  // it would belong to the symbol above
    EXPECT_TRUE(Remarks().contains("no header")) << Remarks().toStdString();
    // Another symbol is shown nevertheless.
    m_symbols->ShowCode(250);
    ASSERT_TRUE(WaitWhole());
    EXPECT_EQ(Remarks(), "nothing to remark");
    CloseLeavingAll();
}

TEST_F(Symbols, ALibraryIsSavedWithAllElseUntouched) {
    OpenLibrary();
    Write("*17 G \"big tree\"\n3 0,0 3");
    QTest::keyClick(m_symbols.get(), Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([&] { return Saved("own.dat") != kLibrary; }));
    EXPECT_EQ(Saved("own.dat"),
              "# a remark\n*17 G \"big tree\"\n3 0,0 3\n*30 L 4\n*250 LC D0 A0 \"road\"\n+5 -2 G17\n*$\n");
    ASSERT_TRUE(WaitWhole());
    EXPECT_FALSE(m_symbols->windowTitle().contains('*'));
}

TEST_F(Symbols, TheShippedLibraryIsNeverWrittenOver) {
    const Outcome shipped = zenro.Run({"doctor", "--json"});
    const std::string at = "symbol.dat";
    const std::size_t end = shipped.out.find(at), start = shipped.out.rfind('"', end);
    ASSERT_NE(end, std::string::npos) << shipped.out;
    const std::string file = shipped.out.substr(start + 1, end + at.size() - start - 1);
    const std::string before = ReadFile(file);
    ASSERT_FALSE(before.empty()) << file;
    OpenLibrary(QString::fromStdString(file), 3);
    Text().moveCursor(QTextCursor::End);
    QTest::keyClicks(&Text(), "1 0,0 1,1");
    ASSERT_TRUE(WaitWhole());
    // Save asks for a file, and the shipped one is refused there too.
    bool warned = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            if (box->text().contains("ships")) warned = true;
            box->button(QMessageBox::Ok) != nullptr ? box->button(QMessageBox::Ok)->click()
                                                    : box->button(QMessageBox::Yes)->click();
        }
    });
    look.start(20);
    EXPECT_TRUE(SaveDialog("&Save", QString::fromStdString(file)));
    EXPECT_TRUE(WaitFor([&] { return warned; }));
    look.stop();
    EXPECT_EQ(ReadFile(file), before);
    // A file of one's own is written.
    EXPECT_TRUE(SaveDialog("&Save", Path("mine.dat")));
    ASSERT_TRUE(WaitFor([&] { return m_symbols->file() == Path("mine.dat"); }))
        << m_symbols->file().toStdString() << " " << The<QLabel>("symbolDoing").text().toStdString();
    EXPECT_NE(Saved("mine.dat").find("1 0,0 1,1\n"), std::string::npos);
    EXPECT_GT(Saved("mine.dat").size(), before.size());
}

TEST_F(Symbols, AProcessThatHangsOrDiesDoesNotTakeTheWindow) {
    OpenLibrary();
    const qint64 first = m_symbols->processId();
    ASSERT_GT(first, 0);
    ASSERT_EQ(kill(static_cast<pid_t>(first), SIGSTOP), 0);
    QElapsedTimer gap;
    gap.start();
    qint64 longest = 0;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &beat, [&] { longest = std::max(longest, gap.restart()); });
    beat.start(5);
    Text().moveCursor(QTextCursor::End);
    QTest::keyClicks(&Text(), "1 -2,-2 2,2");
    ASSERT_TRUE(WaitFor([&] { return m_symbols->processId() != first && m_symbols->isWhole(); }));
    EXPECT_LT(longest, 1000);
    // The next word draws again.
    QTest::keyClick(&Text(), Qt::Key_Return);
    EXPECT_TRUE(WaitFor([&] { return Dark(The<SymbolPane>("alone"), QRectF(-0.5, -0.5, 1, 1)) > 5; }));
    ASSERT_TRUE(WaitWhole());
    kill(static_cast<pid_t>(m_symbols->processId()), SIGKILL);
    QTest::qWait(100);
    m_symbols->ShowCode(250);
    EXPECT_TRUE(WaitWhole());
    EXPECT_GT(Dark(The<SymbolPane>("line"), QRectF(-32, -5, 64, 10)), 100);
    CloseLeavingAll();
}

TEST_F(Symbols, AreComparedWithAnotherLibrary) {
    zenro.File("other.dat",
               "*17 G \"tree\"\n3 0,0 2\n*40 G \"well\"\n3 0,0 1\n*250 LC D0 A0 \"road\"\n+5 -2 G17\n*$\n");
    OpenLibrary();
    EXPECT_TRUE(SaveDialog("&Compare with another library...", Path("other.dat")));
    ASSERT_TRUE(WaitFor([&] { return Codes() == QStringList({"17", "30", "40"}); })) << Codes().join(' ').toStdString();
    ASSERT_TRUE(WaitWhole());
    EXPECT_EQ(The<QPlainTextEdit>("difference").toPlainText(), "  - 2 -2,-2 2,-2 2,2 -2,2 -2,-2\n  + 3 0,0 2\n");
    EXPECT_GT(Dark(The<SymbolPane>("other"), QRectF(1.8, -0.5, 0.4, 1)), 5);
    m_symbols->ShowCode(40);
    ASSERT_TRUE(WaitWhole());
    EXPECT_TRUE(The<QPlainTextEdit>("difference").toPlainText().startsWith("only there"));
    EXPECT_TRUE(Text().isReadOnly());
    m_symbols->findChild<QAction*>("Compare &no more")->trigger();
    EXPECT_EQ(Codes(), QStringList({"17", "30", "250"}));
}

TEST_F(Symbols, AFeaturesSymbolIsMendedAndTheMapShowsIt) {
    Open({}, {"--symbols=" + library, "--sheet=40500000,3400000,40500100,3400100"});
    const long before = WindowTest::Dark();
    auto* feature = window().findChild<QTreeWidget*>("feature");
    QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier,
                      map().viewport().ToScreen({kTownX + 60, kTownY + 20}).toPoint());
    ASSERT_TRUE(WaitFor([&] { return feature->topLevelItemCount() == 1; }));
    QTreeWidgetItem* symbol = nullptr;
    for (QTreeWidgetItemIterator i(feature); *i != nullptr; ++i)
        if ((*i)->text(0) == "Symbol") symbol = *i;
    ASSERT_NE(symbol, nullptr);
    emit feature->itemActivated(symbol, 0);
    auto* opened = window().findChild<SymbolWindow*>();
    ASSERT_NE(opened, nullptr);
    ASSERT_TRUE(WaitFor([&] { return opened->isWhole(); }));
    EXPECT_EQ(opened->code(), 17);
    auto* text = opened->findChild<SymbolText*>();
    text->moveCursor(QTextCursor::End);
    QTest::keyClicks(text, "3 0,0 8");
    ASSERT_TRUE(WaitFor([&] { return opened->isWhole(); }));
    QTest::keyClick(opened, Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && WindowTest::Dark() > before + 50; }));
}

}  // namespace
