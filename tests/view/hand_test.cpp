// The hand on the map: a touchpad, the clipboard, dark colours of the desktop, another editor.
#include <signal.h>

#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QPalette>
#include <QPointingDevice>
#include <QTreeWidget>
#include <QWheelEvent>
#include <cmath>
#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/view/window_fixture.h"
#include "tools/view/editor.h"

namespace {

using namespace zm::test;
using zm::view::EditorCommand;
using zm::view::Viewport;

class WindowHand : public WindowTest {
 protected:
    void Turn(QPoint pixels, QPoint angle, Qt::KeyboardModifiers keys, Qt::ScrollPhase phase) {
        const QPointF at(200, 150);
        QWheelEvent event(at, map().mapToGlobal(at), pixels, angle, Qt::NoButton, keys, phase, false);
        QApplication::sendEvent(&map(), &event);
    }
    void MoveTo(QPoint at) { QTest::mouseMove(&map(), at); }
    void Drag(Qt::MouseButton button, Qt::KeyboardModifiers keys, QPoint from, QPoint to) {
        QTest::mousePress(&map(), button, keys, from);
        for (const QPoint at : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, at, map().mapToGlobal(QPointF(at)), Qt::NoButton, button, keys);
            QApplication::sendEvent(&map(), &move);
        }
        QTest::mouseRelease(&map(), button, keys, to);
    }
    void ClickPlane(double x, double y) {
        QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier,
                          map().viewport().ToScreen({kTownX + x, kTownY + y}).toPoint());
    }
    /// Pixels in the colour of what is marked.
    long Marked() const {
        const QImage seen = map().Seen();
        long marked = 0;
        for (int y = 0; y < seen.height(); ++y)
            for (int x = 0; x < seen.width(); ++x) marked += seen.pixel(x, y) == qRgb(220, 30, 60) ? 1 : 0;
        return marked;
    }
};

TEST_F(WindowHand, TwoFingersOfATouchpadMoveTheMapByThePixel) {
    Open();
    const Viewport before = map().viewport();
    Turn({30, -20}, {60, -40}, Qt::NoModifier, Qt::ScrollUpdate);
    const Viewport after = map().viewport();
    EXPECT_DOUBLE_EQ(after.pixel, before.pixel);
    EXPECT_NEAR(after.x, before.x - 30 * before.pixel, 1e-6);
    EXPECT_NEAR(after.y, before.y - 20 * before.pixel, 1e-6);
}

TEST_F(WindowHand, WithCtrlTwoFingersZoomAboutTheCursor) {
    Open();
    const QPointF place = map().viewport().ToPlane({200, 150});
    const double before = map().viewport().pixel;
    Turn({0, 15}, {0, 30}, Qt::ControlModifier, Qt::ScrollUpdate);
    EXPECT_NEAR(map().viewport().pixel, before / std::pow(1.25, 0.25), 1e-12);
    EXPECT_NEAR(map().viewport().ToPlane({200, 150}).x(), place.x(), 1e-6);
}

TEST_F(WindowHand, AFineWheelZoomsByAsMuchAsItTurnsAndTheHorizontalOneDoesNothing) {
    Open();
    const double before = map().viewport().pixel;
    Turn({}, {0, 15}, Qt::NoModifier, Qt::NoScrollPhase);
    EXPECT_NEAR(map().viewport().pixel, before / std::pow(1.25, 0.125), 1e-12);
    const Viewport now = map().viewport();
    Turn({}, {120, 0}, Qt::NoModifier, Qt::NoScrollPhase);
    EXPECT_EQ(map().viewport(), now);
}

TEST_F(WindowHand, APinchZoomsAndAWildOneDoesNotThrowTheMapAway) {
    Open();
    const double before = map().viewport().pixel;
    const auto pinch = [&](double value) {
        const QPointF at(200, 150);
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, at, at, at, value,
                                  {});
        QApplication::sendEvent(&map(), &event);
    };
    pinch(0.25);
    EXPECT_NEAR(map().viewport().pixel, before / 1.25, 1e-12);
    pinch(-3.0);
    EXPECT_NEAR(map().viewport().pixel, before / 1.25 * 5.0, 1e-9);
}

TEST_F(WindowHand, KeysTurnTheMapAndNorthIsUpAgain) {
    Open();
    const auto key = [&](Qt::Key which, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(&map(), which, with);
        return map().viewport().rotation;
    };
    const QPointF middle(map().viewport().x, map().viewport().y);
    EXPECT_DOUBLE_EQ(key(Qt::Key_R), 15.0);
    EXPECT_DOUBLE_EQ(key(Qt::Key_R), 30.0);
    EXPECT_DOUBLE_EQ(key(Qt::Key_R, Qt::ShiftModifier), 15.0);
    EXPECT_DOUBLE_EQ(key(Qt::Key_Left, Qt::ControlModifier), 30.0);
    EXPECT_DOUBLE_EQ(key(Qt::Key_Right, Qt::ControlModifier), 15.0);
    EXPECT_NEAR(map().viewport().x, middle.x(), 1e-6);  // about the middle of the window
    WaitForPicture();
    EXPECT_GT(Dark(), 100);
    EXPECT_DOUBLE_EQ(key(Qt::Key_N), 0.0);
}

TEST_F(WindowHand, AScaleIsPickedOrTyped) {
    Open();
    auto* box = window().findChild<QComboBox*>("scale");
    QTest::keyClick(&map(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(box->lineEdit()->hasFocus());
    QTest::keyClicks(box->lineEdit(), "1:1 750");
    QTest::keyClick(box->lineEdit(), Qt::Key_Return);
    EXPECT_NEAR(map().scale(), 1750.0, 1e-6);
    EXPECT_EQ(box->currentText(), "1:1750");
    EXPECT_EQ(box->findText("1:2000"), 3);
    emit box->activated(3);  // as the text is not changed, nothing changes
    EXPECT_NEAR(map().scale(), 1750.0, 1e-6);
    box->setCurrentIndex(3);
    emit box->activated(3);
    EXPECT_NEAR(map().scale(), 2000.0, 1e-6);
    box->lineEdit()->selectAll();
    QTest::keyClicks(box->lineEdit(), "near");
    QTest::keyClick(box->lineEdit(), Qt::Key_Return);
    EXPECT_NEAR(map().scale(), 2000.0, 1e-6);  // no scale: as it was
    EXPECT_EQ(box->currentText(), "1:2000");
}

TEST_F(WindowHand, ASmallPanNeedsNoDrawingAndALargeOneShowsTheOldPictureUntilThen) {
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    const auto drawn = [&] { return Count(ReadFile(zenro / "log"), "\"painted\""); };
    const int before = drawn();
    const long all = Dark();
    Turn({30, 20}, {60, 40}, Qt::NoModifier, Qt::ScrollUpdate);
    EXPECT_TRUE(map().isWhole());
    EXPECT_NEAR(static_cast<double>(Dark()), static_cast<double>(all), all * 0.2);
    QTest::qWait(400);
    EXPECT_EQ(drawn(), before);
    Turn({-250, 0}, {-500, 0}, Qt::NoModifier, Qt::ScrollUpdate);
    EXPECT_FALSE(map().isWhole());
    EXPECT_GT(Dark(), 100);
    WaitForPicture();
    EXPECT_EQ(drawn(), before + 1);
}

TEST_F(WindowHand, TheMiddleButtonPansAndItsDoubleClickShowsAll) {
    Open({}, {"--sheet=40500000,3400000,40500050,3400050"});
    const Viewport before = map().viewport();
    Drag(Qt::MiddleButton, Qt::NoModifier, {200, 150}, {260, 130});
    EXPECT_NEAR(map().viewport().x, before.x - 60 * before.pixel, 1e-6);
    EXPECT_NEAR(map().viewport().y, before.y - 20 * before.pixel, 1e-6);
    EXPECT_EQ(map().viewport().pixel, before.pixel);
    QTest::mouseDClick(&map(), Qt::MiddleButton);
    EXPECT_NEAR(map().viewport().x, kTownX + 50, 1.0);  // the data are 100 m by 40 m
    EXPECT_GT(map().viewport().pixel * map().width(), 100.0);
}

TEST_F(WindowHand, ShiftAndADragZoomToTheRectangle) {
    Open();
    const Viewport before = map().viewport();
    const QPointF middle = before.ToPlane({200, 160});
    Drag(Qt::LeftButton, Qt::ShiftModifier, {100, 120}, {300, 200});
    EXPECT_NEAR(map().viewport().x, middle.x(), 1e-6);
    EXPECT_NEAR(map().viewport().y, middle.y(), 1e-6);
    EXPECT_NEAR(map().viewport().pixel, before.pixel * std::max(200.0 / map().width(), 80.0 / map().height()), 1e-9);
}

TEST_F(WindowHand, PointsOfAMeasureAreTakenBackAndEscEndsIt) {
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    QTest::keyClick(&map(), Qt::Key_A);
    for (const QPointF corner : {QPointF(10, 10), QPointF(30, 10), QPointF(30, 40), QPointF(10, 40)}) {
        ClickPlane(corner.x() + 0.3, corner.y() + 0.3);  // snapped to the corner of the house
        const QString points = QString::number(map().measured().size());
        EXPECT_TRUE(WaitFor([&] {
            return map().measured().last() == QPointF(kTownX, kTownY) + corner &&
                   ReadFile(zenro / "log").find("\"points\":" + points.toStdString()) != std::string::npos;
        }));
    }
    EXPECT_TRUE(WaitFor([&] { return map().readout().startsWith("Area in the plane: 600.00 m²\n"); }))
        << map().readout().toStdString();
    EXPECT_TRUE(map().readout().contains("Area on the ellipsoid: 600.0"));
    EXPECT_TRUE(map().readout().contains("Perimeter in the plane: 100.000 m"));
    EXPECT_GT(Marked(), 50);
    QTest::keyClick(&map(), Qt::Key_Backspace);
    EXPECT_EQ(map().measured().size(), 3);
    EXPECT_TRUE(WaitFor([&] { return map().readout().startsWith("Area in the plane: 300.00 m²\n"); }));
    QTest::keyClick(&map(), Qt::Key_Escape);
    EXPECT_TRUE(map().measured().isEmpty());
    EXPECT_EQ(map().readout(), "");
    EXPECT_EQ(Marked(), 0);
}

TEST_F(WindowHand, WhatIsAskedForIsMarkedUntilEsc) {
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    EXPECT_EQ(Marked(), 0);
    ClickPlane(20, 25);
    EXPECT_TRUE(WaitFor([&] { return Marked() > 50; }));
    QTest::keyClick(&map(), Qt::Key_Escape);
    EXPECT_EQ(Marked(), 0);
}

TEST_F(WindowHand, SymbolsAreOfTheSheetOrOfTheScaleOfTheView) {
    Open({}, {"--sheet=40500040,3400010,40500070,3400030"});  // the tree, at 1:100 or so
    const long sheet = Dark();
    Action("Symbols by the scale of the view")->trigger();
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && Dark() < sheet; }));
    Action("Symbols as on the sheet")->trigger();
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && Dark() == sheet; }));
}

TEST_F(WindowHand, TheListHasEachRuleInItsColourAndWidth) {
    rules = QString::fromStdString(zenro.File(
        "colours.rules", "[things : area]\n* -> symbol 200, layer 206\n[things : line]\n* -> symbol 250, layer 213\n"));
    Open();
    ASSERT_TRUE(WaitFor([&] { return layers().topLevelItemCount() == 1; }));
    QTreeWidgetItem* things = layers().topLevelItem(0);
    ASSERT_EQ(things->childCount(), 2);
    const auto stroke = [&](int row) {  // its colour, and how many pixels wide it is
        const QImage icon = things->child(row)->icon(0).pixmap(28, 14).toImage();
        int width = 0;
        for (int y = 0; y < icon.height(); ++y) width += icon.pixel(14, y) != qRgb(255, 255, 255) ? 1 : 0;
        return std::pair(QColor(icon.pixel(14, 7)), width);
    };
    const auto [wall, wide] = stroke(0);
    const auto [edge, thin] = stroke(1);
    EXPECT_EQ(wall, QColor(Qt::black));
    EXPECT_GT(edge.green(), edge.red() + 100) << edge.name().toStdString();
    EXPECT_EQ(thin, 1);
    EXPECT_EQ(wide, 2) << things->child(0)->toolTip(0).toStdString();
}

TEST_F(WindowHand, TheLineBelowNamesTheSystemAndWhatIsGoingOn) {
    Open();
    EXPECT_EQ(Said("system"), "2000 family, 3-degree zone 40, central meridian 120");
    EXPECT_EQ(Said("doing"), "ready");
    QTest::keyClick(&map(), Qt::Key_Plus);
    map().Turn(5.0);
    EXPECT_EQ(Said("doing"), "drawing");
    EXPECT_TRUE(WaitFor([&] { return Said("doing") == "ready"; }));
}

TEST_F(WindowHand, OfManyFeaturesTheStrokesComeFirstAndTheLabelsAfterAMomentOfRest) {
    std::string lines;
    for (int i = 0; i < 4200; ++i) {
        const auto at = [&](int by) {
            return "[" + std::to_string(40500000 + i % 70 + by) + "," + std::to_string(3400000 + i / 70) + "]";
        };
        lines += (i > 0 ? "," : "") + LineFeature(at(0) + "," + at(1), i % 300 == 0 ? R"("name":"Mill")" : "");
    }
    const QString many = QString::fromStdString(zenro.File("many.geojson", Collection(lines)));
    rules = QString::fromStdString(zenro.File("many.rules", "* -> symbol 250, layer 250, note D, label name\n"));
    Open({many});
    std::vector<nlohmann::json> painted;
    std::istringstream log(ReadFile(zenro / "log"));
    for (std::string line; std::getline(log, line);)
        if (const auto one = nlohmann::json::parse(line);
            one.value("is", "") == "painted" && one.at("whole").get<bool>())
            painted.push_back(one);
    ASSERT_EQ(painted.size(), 2U);
    EXPECT_FALSE(painted[0].at("labels").get<bool>());
    EXPECT_TRUE(painted[1].at("labels").get<bool>());
    EXPECT_GE(painted[1].at("ms").get<double>() - painted[0].at("ms").get<double>(), 195.0);
}

TEST_F(WindowHand, OnlyOneLayerOrRuleIsShownByTheMenuOfTheList) {
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    ASSERT_TRUE(WaitFor([&] { return layers().topLevelItemCount() == 1; }));
    const long all = Dark();
    layers().topLevelItem(0)->setExpanded(true);
    const auto choose = [&](QTreeWidgetItem* item, int entry) {
        QTimer::singleShot(0, [entry] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (int i = 0; i <= entry; ++i) QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        });
        const QPoint at = layers().visualItemRect(item).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, layers().viewport()->mapToGlobal(at));
        QApplication::sendEvent(layers().viewport(), &event);
        EXPECT_TRUE(WaitFor([&] { return !map().isWhole(); }));
        WaitForPicture();
    };
    choose(layers().topLevelItem(0)->child(0), 0);
    EXPECT_EQ(layers().topLevelItem(0)->child(0)->checkState(0), Qt::Checked);
    EXPECT_EQ(layers().topLevelItem(0)->child(1)->checkState(0), Qt::Unchecked);
    EXPECT_LT(Dark(), all);
    EXPECT_GT(Dark(), 50);
    choose(layers().topLevelItem(0)->child(0), 1);
    EXPECT_EQ(Dark(), all);
}

TEST_F(WindowHand, TheCoordinateIsCopiedAsCoordReadsIt) {
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    MoveTo({300, 200});
    ASSERT_TRUE(WaitFor([&] { return Said("degrees").contains("E"); }));
    const QPointF at = map().viewport().ToPlane({300, 200});
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
    const QString copied = QApplication::clipboard()->text();
    const QStringList parts = copied.section('\t', 0, 0).split(' ');
    ASSERT_EQ(parts.size(), 2) << copied.toStdString();
    EXPECT_NEAR(parts[0].toDouble(), at.y(), 0.0006);  // northing first
    EXPECT_NEAR(parts[1].toDouble(), at.x(), 0.0006);
    EXPECT_TRUE(copied.section('\t', 1).startsWith("N30°")) << copied.toStdString();
    const std::string points = zenro.File("copied.txt", copied.toStdString() + "\n");
    const Outcome r = zenro.Run({"coord", "to-geo", points, "--angles", "dms", "--decimals", "3"});
    EXPECT_EQ(r.status, 0) << r.err;
    // What coord makes of the plane is what the window said of the degrees.
    EXPECT_NE(r.out.find(Said("degrees").section("  ", 0, 0).chopped(1).toStdString()), std::string::npos) << r.out;
    // The search reads it too.
    auto* search = window().findChild<QLineEdit*>("search");
    search->setText(copied);
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_TRUE(WaitFor([&] { return map().viewport().x == parts[1].toDouble(); }));
    EXPECT_EQ(map().viewport().y, parts[0].toDouble());
}

TEST_F(WindowHand, WhereTheMouseWasNeverOnTheMapTheMiddleIsCopied) {
    Open();
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&map(), &leave);
    EXPECT_EQ(Said("plane"), "");
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(),
              QString::number(map().viewport().y, 'f', 3) + " " + QString::number(map().viewport().x, 'f', 3));
}

TEST_F(WindowHand, EnterDoesInTheMiddleWhatAClickDoes) {
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    map().Fit(QRectF(kTownX + 15, kTownY + 20, 10, 10));
    WaitForPicture();
    QTest::keyClick(&map(), Qt::Key_Return);
    auto* feature = window().findChild<QTreeWidget*>("feature");
    EXPECT_TRUE(WaitFor([&] { return feature->topLevelItemCount() == 1; }));
    QTest::keyClick(&map(), Qt::Key_S);
    QTest::keyClick(&map(), Qt::Key_D);
    QTest::keyClick(&map(), Qt::Key_Enter);
    QTest::keyClick(&map(), Qt::Key_Right);
    QTest::keyClick(&map(), Qt::Key_Enter);
    ASSERT_EQ(map().measured().size(), 2);
    const double length = map().measured()[1].x() - map().measured()[0].x();
    EXPECT_NEAR(length, map().width() * 0.15 * map().viewport().pixel, 1e-6);
    EXPECT_TRUE(WaitFor([&] { return map().readout().contains(QString::number(length, 'f', 3) + " m"); }));
}

TEST_F(WindowHand, ThePictureIsCopiedAsItIsSeen) {
    Open();
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    const QImage copied = QApplication::clipboard()->image();
    EXPECT_EQ(copied.size(), map().Seen().size());
    EXPECT_EQ(copied.convertToFormat(QImage::Format_RGB32), map().Seen().convertToFormat(QImage::Format_RGB32));
}

TEST_F(WindowHand, InTheListOfMessagesTheLinesThatAreChosenAreCopied) {
    Open();
    auto* list = window().findChild<QListWidget*>("messages");
    list->addItems({"my.rules:3: wrong", "left alone", "my.rules:9: wrong"});
    window().findChild<QWidget*>("messagesDock")->show();
    list->item(0)->setSelected(true);
    list->item(2)->setSelected(true);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "my.rules:3: wrong\nmy.rules:9: wrong");
}

TEST_F(WindowHand, DegreesGoOnAfterTheMapWasReadAgain) {
    Open();
    const std::string log = ReadFile(zenro / "log");
    const int worker = std::stoi(log.substr(log.find("\"worker\":") + 9));
    ASSERT_EQ(kill(worker, SIGSTOP), 0);
    MoveTo({300, 200});  // a question that is never answered
    QTest::qWait(50);
    QTest::keyClick(&window(), Qt::Key_F5);
    ASSERT_TRUE(WaitFor([&] { return !map().isWhole(); }));
    WaitForPicture();
    const QString before = Said("degrees");
    MoveTo({400, 300});
    EXPECT_TRUE(QTest::qWaitFor([&] { return Said("degrees") != before; }, 10000));
}

TEST_F(WindowHand, ThePaperIsWhiteWhereTheDesktopIsDark) {
    const QPalette light = QApplication::palette();
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(35, 35, 38));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Base, QColor(25, 25, 28));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Button, QColor(45, 45, 48));
    dark.setColor(QPalette::ButtonText, Qt::white);
    QApplication::setPalette(dark);
    Open();
    map().SetReadout("a line that is read");
    const QImage seen = map().Seen();
    long white = 0, black = 0;
    for (int y = 0; y < seen.height(); ++y)
        for (int x = 0; x < seen.width(); ++x) white += seen.pixel(x, y) == qRgb(255, 255, 255) ? 1 : 0;
    for (int y = 8; y < 40; ++y)
        for (int x = 8; x < 160; ++x) black += qGray(seen.pixel(x, y)) < 80 ? 1 : 0;
    EXPECT_GT(white, seen.width() * seen.height() / 2L);
    EXPECT_GT(black, 50);  // the readout on its own light ground
    const QImage frame = window().findChild<zm::view::LayerPanel*>()->grab().toImage();
    EXPECT_LT(qGray(frame.pixel(frame.width() / 2, frame.height() - 20)), 80);
    QApplication::setPalette(light);
}

TEST_F(WindowHand, ALongLineThatIsReadIsBrokenBeforeTheEdge) {
    Open({}, {"--sheet=40500040,3400070,40500060,3400090"});  // nothing is there
    const auto rows = [&](const QString& text) {  // that are darker in the left half than a frame makes them
        map().SetReadout(text);
        const QImage seen = map().Seen();
        int count = 0;
        for (int y = 0; y < seen.height() / 2; ++y) {
            int dark = 0;
            for (int x = 20; x < 120; ++x) dark += qGray(seen.pixel(x, y)) < 90 ? 1 : 0;
            count += dark > 0 ? 1 : 0;
            EXPECT_EQ(seen.pixel(seen.width() - 4, y), qRgb(255, 255, 255)) << y;  // beside its box
        }
        return count;
    };
    const int one = rows("my.rules:21: wrong");
    EXPECT_GT(one, 5);
    EXPECT_GT(rows("my.rules:21: wrong" + QString(" and more of it").repeated(20)), 2 * one);
}

TEST_F(WindowHand, TheRuleOfAFeatureIsOpenedInTheReadersEditor) {
    const std::string script =
        zenro.File("edit", "#!/bin/sh\nls -l /proc/$$/fd > \"$0.files\"\necho \"$@\" > \"$0.out\"\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    qputenv("ZENRO_EDITOR", ("\"" + script + "\" --wait").c_str());
    Open({}, {"--sheet=40500000,3400000,40500100,3400100"});
    const QPoint house = map().viewport().ToScreen({kTownX + 20, kTownY + 25}).toPoint();
    QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier, house);
    auto* feature = window().findChild<QTreeWidget*>("feature");
    ASSERT_TRUE(WaitFor([&] { return feature->topLevelItemCount() == 1; }));
    QTreeWidgetItem* rule = nullptr;
    for (int i = 0; i < feature->topLevelItem(0)->childCount(); ++i)
        if (feature->topLevelItem(0)->child(i)->text(0) == "Rule") rule = feature->topLevelItem(0)->child(i);
    ASSERT_NE(rule, nullptr);
    emit feature->itemActivated(rule, 0);
    const auto read = [&](const char* end) {
        return std::filesystem::exists(script + end) ? ReadFile(script + end) : std::string();
    };
    ASSERT_TRUE(WaitFor([&] { return !read(".out").empty(); }));
    EXPECT_EQ(ReadFile(script + ".out"), "--wait +2 " + rules.toStdString() + "\n");
    // The pictures of the window are handed down to the process that draws, and to no other.
    EXPECT_EQ(ReadFile(script + ".files").find("zenro-view"), std::string::npos) << ReadFile(script + ".files");
    qunsetenv("ZENRO_EDITOR");
}

struct EditorCase {
    const char *name, *editor;
    QStringList command;
};
void PrintTo(const EditorCase& c, std::ostream* out) {
    *out << c.name;
}
class Editors : public testing::TestWithParam<EditorCase> {};
TEST_P(Editors, AreOpenedAtTheLine) {
    EXPECT_EQ(EditorCommand(GetParam().editor, "a.rules", 7), GetParam().command);
}
INSTANTIATE_TEST_SUITE_P(
    Names, Editors,
    testing::Values(
        EditorCase{"plain", "gedit", {"gedit", "+7", "a.rules"}},
        EditorCase{"with_options", "emacsclient -c", {"emacsclient", "-c", "+7", "a.rules"}},
        EditorCase{"in_a_terminal", "/usr/bin/vim", {"x-terminal-emulator", "-e", "/usr/bin/vim", "+7", "a.rules"}},
        EditorCase{"file_and_line_in_one", "code", {"code", "-g", "a.rules:7"}},
        EditorCase{"line_option", "kate", {"kate", "-l", "7", "a.rules"}}, EditorCase{"none", "", {}}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
