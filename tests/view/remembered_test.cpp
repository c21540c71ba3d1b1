// What the window remembers: its panels, the files, where one looked.
#include <gmock/gmock.h>

#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <filesystem>

#include "tests/view/window_fixture.h"
#include "tools/view/map_memory.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;
using zm::view::Viewport;

class WindowMemory : public WindowTest {
 protected:
    Viewport LookAt(double x, double y, double pixel, double turn) {
        Viewport view = map().viewport();
        view.x = x;
        view.y = y;
        view.pixel = pixel;
        view.rotation = turn;
        map().Show(view);
        return view;
    }
    static void ExpectSame(const Viewport& a, const Viewport& b) {
        EXPECT_NEAR(a.x, b.x, 1e-6);  // eastings have 8 digits before the point
        EXPECT_NEAR(a.y, b.y, 1e-6);
        EXPECT_DOUBLE_EQ(a.pixel, b.pixel);
        EXPECT_DOUBLE_EQ(a.rotation, b.rotation);
    }
    QString Copy(const char* name) const {
        fs::copy_file(town.toStdString(), zenro / name);
        return Path(name);
    }
    QMenu* Recent() const {
        for (QMenu* menu : window().findChildren<QMenu*>())
            if (menu->title() == "Recent files") return menu;
        return nullptr;
    }
};

TEST_F(WindowMemory, TheLastViewOfEachMapIsShownAgain) {
    const QString other = Copy("other.geojson");
    Open();
    const Viewport first = LookAt(kTownX + 20, kTownY + 25, 0.05, 0.0);
    Close();
    Open({other});
    EXPECT_NE(map().viewport().pixel, first.pixel);  // that map was never looked at
    const Viewport second = LookAt(kTownX + 60, kTownY + 20, 0.02, 30.0);
    Close();
    Open();
    ExpectSame(map().viewport(), first);
    Close();
    Open({other});
    ExpectSame(map().viewport(), second);
}

TEST_F(WindowMemory, WhatTheCommandLineSaysComesFirst) {
    Open();
    LookAt(kTownX + 20, kTownY + 25, 0.05, 0.0);
    Close();
    Open({}, {"--sheet=40500000,3400000,40500200,3400200"});
    EXPECT_NEAR(map().viewport().x, kTownX + 100, 1e-6);
    EXPECT_NEAR(map().viewport().y, kTownY + 100, 1e-6);
}

TEST_F(WindowMemory, AViewThatShowsNothingOfTheDataIsNotShown) {
    Open();
    LookAt(kTownX + 90000, kTownY, 0.05, 0.0);
    Close();
    Open();
    EXPECT_NEAR(map().viewport().x, kTownX + 50, 1.0);
}

TEST_F(WindowMemory, ARecentFileIsOpenedWithItsRulesAndItsView) {
    const QString other = Copy("other.geojson");
    Open();
    const Viewport first = LookAt(kTownX + 20, kTownY + 25, 0.05, 0.0);
    Close();
    const QString mine = rules;
    rules = QString::fromStdString(zenro.File("plain.rules", "[*]\n* -> symbol 250, layer 250\n"));
    Open({other});
    QMenu* recent = Recent();
    ASSERT_NE(recent, nullptr);
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 2);
    EXPECT_EQ(recent->actions().at(0)->text(), other);
    recent->actions().at(1)->trigger();
    EXPECT_TRUE(WaitFor([&] { return window().windowTitle().startsWith("things.geojson"); }));
    WaitForPicture();
    ExpectSame(map().viewport(), first);
    bool named = false;  // by the first rules the house has the label of its name, and layer code 200
    for (int i = 0; i < layers().topLevelItem(0)->childCount(); ++i)
        named = named || layers().topLevelItem(0)->child(i)->text(0).startsWith("200");
    EXPECT_TRUE(WaitFor([&] { return layers().topLevelItem(0)->childCount() == 3; }));
    rules = mine;
}

TEST_F(WindowMemory, PanelsAndSizeComeBack) {
    Open();
    auto* layersDock = window().findChild<QDockWidget*>("layersDock");
    auto* messages = window().findChild<QDockWidget*>("messagesDock");
    EXPECT_TRUE(layersDock->isVisible());
    EXPECT_FALSE(messages->isVisible());
    layersDock->hide();
    messages->show();
    window().resize(760, 540);
    QTest::qWait(50);
    Close();
    Open();
    EXPECT_FALSE(window().findChild<QDockWidget*>("layersDock")->isVisible());
    EXPECT_TRUE(window().findChild<QDockWidget*>("messagesDock")->isVisible());
    EXPECT_EQ(window().size(), QSize(760, 540));
}

TEST_F(WindowMemory, WhatTheFileOfSettingsHoldsIsTakenWithCare) {
    fs::create_directories(zenro / "config/zenromath");
    zenro.File(
        "config/zenromath/zenro.conf",
        "[view]\nmaps=\"[{\\\"inputs\\\":[]},{\\\"inputs\\\":[\\\"x\\\"],\\\"view\\\":[1,2]},7]\"\ngeometry=x\n");
    Open();
    EXPECT_GT(Dark(), 100);
    const auto maps = zm::view::RememberedMaps();
    ASSERT_EQ(maps.size(), 2);
    EXPECT_EQ(maps[0].inputs, QStringList{town});
    EXPECT_FALSE(maps[1].view.has_value());
}

}  // namespace
