// The window of the map in the test's own process, without a screen: a small town, and a person who opens it, presses
// keys, answers dialogs and closes it again.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QStringList>
#include <QTest>
#include <functional>
#include <memory>
#include <string>

#include "tests/zenro/program.h"
#include "tools/view/layer_panel.h"
#include "tools/view/map_view.h"
#include "tools/view/view_window.h"

namespace zm::test {

constexpr int kPatience = 60000;  // milliseconds

class WindowTest : public testing::Test {
 protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    /// Opens the window for inputs, the town without any, and waits for its first whole picture.
    view::ViewWindow& Open(QStringList inputs = {}, const QStringList& options = {});
    /// Closes it as its cross does, and takes it away.
    void Close();
    view::ViewWindow& window() const { return *m_window; }
    view::MapView& map() const { return *m_window->findChild<view::MapView*>("map"); }
    view::LayerPanel& layers() const { return *m_window->findChild<view::LayerPanel*>("layers"); }
    QString Said(const char* label) const { return m_window->findChild<QLabel*>(label)->text(); }
    QString Messages() const;
    bool WaitFor(const std::function<bool()>& fits) const { return QTest::qWaitFor(fits, kPatience); }
    void WaitForPicture() const {
        EXPECT_TRUE(WaitFor([this] { return map().isWhole(); }));
    }
    bool WaitForMessage(const QString& part) const {
        return WaitFor([&] { return Messages().contains(part); });
    }
    /// The action of this text in the menus.
    QAction* Action(const char* text) const { return m_window->findChild<QAction*>(text); }
    /// Triggers an action, and acts on the dialog of a kind that it opens.
    template <class Dialog>
    bool InDialog(const char* action, const std::function<void(Dialog&)>& act) const {
        return InDialogAfter<Dialog>([&] { Action(action)->trigger(); }, act);
    }
    template <class Dialog>
    bool InDialogAfter(const std::function<void()>& open, const std::function<void(Dialog&)>& act) const {
        bool met = false;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &look, [&] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || met) return;
            met = true;
            act(*dialog);
        });
        look.start(20);
        open();
        WaitFor([&] { return met && QApplication::activeModalWidget() == nullptr; });
        return met;
    }
    QString Path(const char* name) const { return QString::fromStdString((zenro / name).string()); }
    /// Screen pixels of the map that are not white.
    long Dark() const;

    Program zenro;
    QString town, rules;
    QString program = ZENRO_PROGRAM;

 private:
    std::unique_ptr<view::ViewWindow> m_window;
};

/// The corner of the town: easting and northing, on the central meridian of zone 40.
constexpr double kTownX = 40500000.0, kTownY = 3400000.0;

}  // namespace zm::test
