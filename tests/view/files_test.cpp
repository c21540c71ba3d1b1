// Files of the window: exports, what is dropped on it, settings that are changed, files that are being written.
#include <gmock/gmock.h>

#include <QDockWidget>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QLocale>
#include <QMimeData>
#include <QProcess>
#include <QTreeWidget>
#include <QUrl>
#include <filesystem>
#include <fstream>
#include <vector>

#include "tests/view/window_fixture.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;
using testing::HasSubstr;

class WindowFiles : public WindowTest {
 protected:
    // 100 m by 100 m in a window that is wider than high.
    void OpenSquare() { Open({}, {"--sheet=40500000,3400000,40500100,3400100"}); }
    /// Exports by the dialog to a file; its path.
    QString Export(const char* action, const char* name) {
        const QString file = Path(name);
        EXPECT_TRUE(InDialog<QFileDialog>(action, [&](QFileDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText(file);
            QMetaObject::invokeMethod(&dialog, "accept");
        }));
        EXPECT_TRUE(WaitForMessage(file + ": written"));
        return file;
    }
    /// The list that opens with an error, and takes room of the map.
    void ShowMessages() const {
        window().findChild<QDockWidget*>("messagesDock")->show();
        QTest::qWait(50);
        WaitForPicture();
    }
    static long DarkOf(const QImage& image) {
        long dark = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) dark += qGray(image.pixel(x, y)) < 200 ? 1 : 0;
        return dark;
    }
    void Drop(const QStringList& files, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& file : files) urls << QUrl::fromLocalFile(file);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(&window(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(&window(), &drop);
    }
    static void Run(const char* command, const QStringList& arguments) {
        EXPECT_EQ(QProcess::execute(command, arguments), 0) << command;
    }
    int Layers() const { return layers().topLevelItemCount(); }
    void Check(int row, bool shown) const {
        layers().topLevelItem(0)->child(row)->setCheckState(0, shown ? Qt::Checked : Qt::Unchecked);
    }
    QString Second() const {
        return QString::fromStdString(
            zenro.File("more.geojson", Collection(LineFeature("[40500000,3400060],[40500100,3400060]", ""))));
    }
};

TEST_F(WindowFiles, TheViewIsExportedAtItsScaleWithoutAFrame) {
    OpenSquare();
    const QImage image(Export("&Export the view...", "view.png"));
    const auto& view = map().viewport();
    // 1:500, 300 pixels an inch.
    EXPECT_NEAR(image.width(), view.size.width() * view.pixel / 500.0 / 0.0254 * 300.0, 2.0);
    EXPECT_NEAR(image.height(), view.size.height() * view.pixel / 500.0 / 0.0254 * 300.0, 2.0);
    EXPECT_GT(DarkOf(image), 2000);
}

TEST_F(WindowFiles, AsASheetItHasItsFrameAndEachFormIsThere) {
    OpenSquare();
    const QImage bare(Export("&Export the view...", "view.png"));
    const QImage sheet(Export("Export as a &sheet with frame...", "sheet.png"));
    EXPECT_GT(sheet.height(), bare.height() + 100);
    const std::pair<const char*, const char*> kForms[] = {
        {"map.pdf", "%PDF"}, {"map.svg", "<?xml"}, {"map.dwg", "AC1006"}, {"map.dxf", "0\nSECTION"}, {"map.rec", "#"}};
    for (const auto& [name, start] : kForms)
        EXPECT_EQ(ReadFile(Export("&Export the view...", name).toStdString()).substr(0, std::strlen(start)), start);
}

TEST_F(WindowFiles, ADrawingAndARecordingAreExportedWholeInTheFormsThatTheyCanHave) {
    using Form = std::pair<const char*, const char*>;
    zenro.File("in.geojson", Collection(LineFeature("[40500000,3400000],[40500100,3400060]", "\"a\":1")));
    zenro.File("any.rules", "* -> symbol 250\n");
    ASSERT_EQ(zenro
                  .Run({"draw", "in.geojson", "--rules", "./any.rules", "--scale", "500", "--no-frame", "-o", "in.dwg",
                        "-o", "in.rec"})
                  .status,
              0);
    for (const auto& [input, forms] :
         {std::pair{"in.dwg", std::vector<Form>{{"d.svg", "<?xml"}, {"d.png", "\x89PNG"}, {"d.dxf", "0\nSECTION"}}},
          {"in.rec", {{"r.svg", "<?xml"}, {"r.pdf", "%PDF"}, {"r.dwg", "AC1006"}}}}) {
        Open({Path(input)});
        for (const auto& [name, start] : forms)
            EXPECT_EQ(ReadFile(Export("&Export the view...", name).toStdString()).substr(0, std::strlen(start)), start);
        Close();
    }
}

TEST_F(WindowFiles, WhatIsHiddenIsNotExported) {
    OpenSquare();
    ASSERT_TRUE(WaitFor([&] { return Layers() == 1 && layers().topLevelItem(0)->childCount() == 3; }));
    const long all = DarkOf(QImage(Export("&Export the view...", "all.png")));
    Check(0, false);
    const long fewer = DarkOf(QImage(Export("&Export the view...", "fewer.png")));
    EXPECT_GT(fewer, 500);
    EXPECT_LT(fewer, all - 500);
    Check(0, true);
    EXPECT_EQ(DarkOf(QImage(Export("&Export the view...", "again.png"))), all);
}

TEST_F(WindowFiles, ATurnedViewIsExportedAsItIsSeen) {
    OpenSquare();
    map().Turn(90.0);
    WaitForPicture();
    const QImage image(Export("&Export the view...", "turned.png"));
    int longest = 0;  // the road is upright
    for (int x = 0; x < image.width(); ++x) {
        int dark = 0;
        for (int y = 0; y < image.height(); ++y) dark += qGray(image.pixel(x, y)) < 200 ? 1 : 0;
        longest = std::max(longest, dark);
    }
    EXPECT_NEAR(longest, 100.0 / 500.0 / 0.0254 * 300.0, 3.0);
}

TEST_F(WindowFiles, AHiddenLayerIsNotExportedAndStaysHiddenWhenTheMapIsReadAgain) {
    Open({town, Second()}, {"--sheet=40500000,3400000,40500100,3400100"});
    ASSERT_TRUE(WaitFor([&] { return Layers() == 2; }));
    const long all = Dark(), exported = DarkOf(QImage(Export("&Export the view...", "all.png")));
    layers().topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && Dark() < all; }));
    const long fewer = Dark();
    const long rest = DarkOf(QImage(Export("&Export the view...", "rest.png")));
    EXPECT_LT(rest, exported - 500);
    EXPECT_GT(rest, 500);  // the line of the other layer
    Action("Read again")->trigger();
    ASSERT_TRUE(WaitFor([&] { return !map().isWhole(); }));
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && Dark() == fewer; }));
    QTest::qWait(300);
    EXPECT_EQ(Dark(), fewer);
    EXPECT_EQ(layers().topLevelItem(0)->checkState(0), Qt::Unchecked);
}

TEST_F(WindowFiles, ANameWithoutAnEndTakesThatOfItsKind) {
    OpenSquare();
    const QString file = Path("plain");
    InDialog<QFileDialog>("&Export the view...", [&](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(file);
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    EXPECT_TRUE(WaitForMessage(file + ".pdf: written"));
}

TEST_F(WindowFiles, AnExportThatCannotBeWrittenIsSaidSo) {
    OpenSquare();
    const QString file = Path("no/such/folder.png");
    InDialogAfter<QFileDialog>([&] { Action("&Export the view...")->trigger(); },
                               [&](QFileDialog& dialog) {
                                   dialog.findChild<QLineEdit*>()->setText(file);
                                   QMetaObject::invokeMethod(&dialog, "accept");
                               });
    EXPECT_TRUE(WaitForMessage("status 5")) << Messages().toStdString();
    EXPECT_THAT(Messages().toStdString(), Not(HasSubstr(": written")));
}

TEST_F(WindowFiles, DroppedDataIsAddedAndTheViewStays) {
    OpenSquare();
    const auto before = map().viewport();
    Drop({Second()});
    EXPECT_TRUE(WaitFor([&] { return Layers() == 2; }));
    WaitForPicture();
    EXPECT_EQ(map().viewport(), before);
}

TEST_F(WindowFiles, WithCtrlItReplacesWhatWasThere) {
    OpenSquare();
    Drop({Second()}, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([&] { return window().windowTitle().startsWith("more.geojson") && Layers() == 1; }));
    WaitForPicture();
    EXPECT_NEAR(map().viewport().y, kTownY + 60, 1.0);  // the whole of the new map
}

TEST_F(WindowFiles, DroppedRulesReplaceTheRules) {
    OpenSquare();
    const long before = Dark();
    ASSERT_TRUE(WaitFor([&] { return layers().topLevelItem(0)->childCount() == 3; }));
    Drop({QString::fromStdString(zenro.File("lines.rules", "[things : line]\n* -> symbol 250, layer 250\n"))});
    EXPECT_TRUE(WaitFor([&] { return layers().topLevelItem(0)->childCount() == 1; }));
    WaitForPicture();
    EXPECT_LT(Dark(), before);
}

TEST_F(WindowFiles, WhatCannotBeReadChangesNothing) {
    OpenSquare();
    Drop({QString::fromStdString(zenro.File("broken.geojson", "{\"type\": \"FeatureColl"))});
    EXPECT_TRUE(WaitForMessage("The last good picture stays."));
    EXPECT_THAT(Messages().toStdString(), HasSubstr("broken.geojson"));
    EXPECT_TRUE(window().windowTitle().startsWith("things.geojson"));
    QTest::keyClick(&window(), Qt::Key_F5);  // the map that is shown is the one that is read again
    EXPECT_TRUE(WaitFor([&] { return !map().isWhole(); }));
    WaitForPicture();
    EXPECT_GT(Dark(), 100);
}

// A program in the place of zenro, before whose first reading somebody saves the rules.
TEST_F(WindowFiles, WhatIsSavedWhileTheMapIsReadForTheFirstTimeIsReadAgain) {
    program = QString::fromStdString(
        zenro.File("zenro", "#!/bin/sh\n[ -e '" + (zenro / "begun").string() + "' ] || echo '# one line more' >> '" +
                                rules.toStdString() + "'\n: > '" + (zenro / "begun").string() + "'\nexec '" +
                                std::string(ZENRO_PROGRAM) + "' \"$@\"\n"));
    fs::permissions(program.toStdString(), fs::perms::owner_all);
    OpenSquare();
    EXPECT_TRUE(WaitForMessage("read again: a file has changed"));
    WaitForPicture();
    QTest::qWait(1000);
    EXPECT_EQ(Messages().count("read again"), 1);
}

// Two words on the reading before the program itself takes over, each until it was seen.
TEST_F(WindowFiles, TheStatusLineHasHowMuchOfAFileIsRead) {
    const auto word = [](const std::string& text) {
        return "printf '\\" + std::to_string(text.size() / 8) + std::to_string(text.size() % 8) + "\\0\\0\\0%s' '" +
               text + "'\n";
    };
    const auto await = [&](const char* name) {
        return "until [ -e '" + (zenro / name).string() + "' ] || [ ! -d '" + zenro.folder().string() +
               "' ]; do sleep 0.02; done\n";
    };
    program = QString::fromStdString(
        zenro.File("zenro", "#!/bin/sh\n" + await("begun") + word(R"({"is":"reading","done":1280,"total":5000})") +
                                await("first") + word(R"({"is":"reading","done":1536,"total":0})") + await("second") +
                                "exec '" + std::string(ZENRO_PROGRAM) + "' \"$@\"\n"));
    fs::permissions(program.toStdString(), fs::perms::owner_all);
    const auto number = [](int value) { return QLocale().toString(value); };
    bool begun = false, ofAll = false, alone = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        const QString said = Said("doing");
        begun = begun || said == "reading";
        ofAll = ofAll || said == "reading " + number(1280) + " / " + number(5000);
        alone = alone || said == "reading " + number(1536);
        if (begun) zenro.File("begun", "");
        if (ofAll) zenro.File("first", "");
        if (alone) zenro.File("second", "");
    });
    look.start(10);
    OpenSquare();
    EXPECT_TRUE(begun);
    EXPECT_TRUE(ofAll);
    EXPECT_TRUE(alone);
    EXPECT_EQ(Said("doing"), "ready");
}

TEST_F(WindowFiles, AFileThatIsBeingWrittenIsReadOnceItIsWhole) {
    const std::string whole = ReadFile(town.toStdString());
    OpenSquare();
    const long before = Dark();
    const std::string longer = Collection(LineFeature("[40500000,3400060],[40500100,3400060]", "\"kind\":\"road\"") +
                                          "," + LineFeature("[40500000,3400070],[40500100,3400070]", ""));
    std::ofstream out(town.toStdString(), std::ios::trunc);
    for (std::size_t at = 0; at < longer.size(); at += 60) {
        out << longer.substr(at, 60) << std::flush;
        QTest::qWait(at == 120 ? 1200 : 100);  // once so long that the half of it is read
        EXPECT_GT(Dark(), before / 2);         // the last good picture stays meanwhile
    }
    out.close();
    EXPECT_TRUE(WaitFor(
        [&] { return layers().topLevelItem(0)->childCount() == 1 && layers().topLevelItem(0)->text(1) == "2"; }));
    WaitForPicture();
}

// Another program edits a layer of a database and keeps it open, as programs with a map do: what it wrote lies in a log
// beside the file.
TEST_F(WindowFiles, WhatAnotherProgramWritesToADatabaseThatItKeepsOpenIsSeen) {
    Run("ogr2ogr", {"-f", "GPKG", Path("town.gpkg"), town, "-nln", "things"});
    QProcess other;
    other.start("python3", {"-c",
                            "import sqlite3, sys\n"
                            "base = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
                            "print(base.execute('PRAGMA journal_mode=WAL').fetchone(), flush=True)\n"
                            "for name in ('IsEmpty', 'MinX', 'MaxX', 'MinY', 'MaxY'):\n"
                            "    base.create_function('ST_' + name, 1, lambda shape: 0)\n"
                            "for line in sys.stdin:\n"
                            "    base.execute(line)\n",
                            Path("town.gpkg")});
    ASSERT_TRUE(other.waitForReadyRead(kPatience));
    ASSERT_TRUE(other.readAllStandardOutput().contains("wal"));
    Open({Path("town.gpkg") + ":things"});
    ASSERT_TRUE(WaitFor([&] { return Layers() == 1 && layers().topLevelItem(0)->childCount() == 3; }));
    other.write("UPDATE things SET kind = 'stump' WHERE kind = 'tree'\n");
    EXPECT_TRUE(WaitFor([&] { return layers().topLevelItem(0)->childCount() == 2; }));
    QTest::qWait(1000);
    EXPECT_EQ(Messages().count("read again"), 1);  // the reader's own work on the log changes nothing
    other.closeWriteChannel();
    EXPECT_TRUE(other.waitForFinished(kPatience));
}

TEST_F(WindowFiles, AttributesBesideAShapefileThatAreSavedAreSeen) {
    const auto shape = [&](const char* name, const char* kind) {
        const std::string data = zenro.File(
            "lines.geojson",
            Collection(LineFeature("[40500000,3400050],[40500100,3400050]", "\"kind\":\"" + std::string(kind) + "\"")));
        Run("ogr2ogr", {"-f", "ESRI Shapefile", Path(name), QString::fromStdString(data)});
    };
    shape("lines.shp", "road");
    shape("other.shp", "path");
    rules = QString::fromStdString(
        zenro.File("lines.rules", "[*]\nkind = 'road' -> symbol 250\nkind = 'path' -> symbol 30\n"));
    Open({Path("lines.shp")});
    const auto drawn = [&] { return Layers() == 1 ? layers().topLevelItem(0)->child(0)->text(0) : QString(); };
    ASSERT_TRUE(WaitFor([&] { return drawn().startsWith("250"); }));
    fs::copy_file(zenro / "other.dbf", zenro / "lines.dbf", fs::copy_options::overwrite_existing);
    EXPECT_TRUE(WaitFor([&] { return drawn().startsWith("30"); })) << Messages().toStdString();
}

TEST_F(WindowFiles, WrongRulesAreNamedAtTheirLineAndTheLastGoodPictureStays) {
    OpenSquare();
    ShowMessages();
    const QImage before = map().Seen();
    const std::string good = ReadFile(rules.toStdString());
    WriteFile(rules.toStdString(), good + "kind = 'well' -> symbol\n");
    ASSERT_TRUE(WaitForMessage("town.rules:8: \"symbol\" needs a value"));
    EXPECT_TRUE(Messages().contains("The last good picture stays."));
    EXPECT_TRUE(map().readout().contains("town.rules:8: "));
    map().SetReadout({});
    EXPECT_EQ(map().Seen(), before);
    map().SetReadout("still wrong");
    // It is still asked.
    QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier,
                      map().viewport().ToScreen({kTownX + 20, kTownY + 25}).toPoint());
    EXPECT_TRUE(WaitFor([&] { return window().findChild<QTreeWidget*>("feature")->topLevelItemCount() == 1; }));
    WriteFile(rules.toStdString(), "[things : line]\n* -> symbol 250, layer 250\n");
    EXPECT_TRUE(WaitFor([&] { return layers().topLevelItem(0)->childCount() == 1 && map().isWhole(); }));
    EXPECT_TRUE(map().readout().isEmpty());  // the error is mended
}

// Each kind of file that the map is drawn with, and what of the picture it changes.
TEST_F(WindowFiles, SymbolsNotesAndLayersThatAreSavedAreSeen) {
    const auto copy = [&](const char* name) {
        fs::copy_file(fs::path(ZENRO_SOURCE_DIR) / "data" / name, zenro / name);
        return Path(name);
    };
    const auto replaced = [&](const char* name, const std::string& from, const std::string& to) {
        std::string text = ReadFile(zenro / name);
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << name;
        WriteFile(zenro / name, text.replace(at, from.size(), to));
    };
    zenro.File("own.dat", "*17 G\n3 0,0 2\n*200 L\n*250 L\n*$\n");
    Open({}, {"--sheet=40500000,3400000,40500100,3400100", "--symbols=" + Path("own.dat"),
              "--notes=" + copy("Orvnote.cod"), "--project=" + copy("project.ini")});
    ShowMessages();
    QImage last = map().Seen();
    const auto seen = [&] {
        const bool changed = WaitFor([&] { return map().isWhole() && map().Seen() != last; });
        last = map().Seen();
        return changed;
    };
    replaced("own.dat", "3 0,0 2", "3 0,0 9");
    EXPECT_TRUE(seen()) << "symbols";
    replaced("Orvnote.cod", ",1,3,25,25,", ",1,3,60,60,");
    EXPECT_TRUE(seen()) << "notes";
    replaced("project.ini", " 200 205 1 1", " 200 205 3 1");
    EXPECT_TRUE(seen()) << "layers";
    // What is wrong in a file that is read nevertheless is said at its line.
    window().findChild<QDockWidget*>("messagesDock")->hide();
    replaced("own.dat", "3 0,0 9", "3 0,0 9\n7 1,1 2,2");
    EXPECT_TRUE(WaitForMessage("own.dat:3: code 17: "));
    EXPECT_TRUE(window().findChild<QDockWidget*>("messagesDock")->isVisible());
    replaced("project.ini", " 200 205 3 1", " 200 x205 3 1");
    EXPECT_TRUE(WaitForMessage(" 200 x205 3"));
    EXPECT_EQ(Messages().count(" 200 x205 3"), 1);
    replaced("project.ini", " 200 x205 3 1", " 200 205 3 1");
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && map().Seen() == last; }));
    // A library without a symbol is none: it is said, and the picture stays.
    WriteFile(zenro / "own.dat", "nothing\n");
    EXPECT_TRUE(WaitForMessage("own.dat: is no symbol library"));
    map().SetReadout({});
    EXPECT_EQ(map().Seen(), last);
}

TEST_F(WindowFiles, ASheetHasTheMarginsOfItsFile) {
    OpenSquare();
    const long bare = DarkOf(QImage(Export("Export as a &sheet with frame...", "bare.png")));
    const QString items = QString::fromStdString(zenro.File("my.margins", "title = A sheet with a title of its own\n"));
    EXPECT_TRUE(InDialog<QFileDialog>("&Margins of the sheet...", [&](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(items);
        QMetaObject::invokeMethod(&dialog, "accept");
    }));
    EXPECT_TRUE(WaitForMessage("my.margins"));
    EXPECT_GT(DarkOf(QImage(Export("Export as a &sheet with frame...", "titled.png"))), bare + 500);
}

// A program in the place of zenro, whose settings change the project at once, as a person does in their window.
TEST_F(WindowFiles, WhatTheSettingsSaveIsSeenAtOnce) {
    const fs::path project = zenro / "my.ini";
    fs::copy_file(fs::path(ZENRO_SOURCE_DIR) / "data/project.ini", project);
    std::string green = ReadFile(project);
    const std::size_t houses = green.find(" 200 205 1 1");  // code from, to, colour, shown
    ASSERT_NE(houses, std::string::npos);
    green.replace(houses, 12, " 200 205 3 1");
    WriteFile(zenro / "green.ini", green);
    const std::string folder = zenro.folder().string();
    program = QString::fromStdString(
        zenro.File("zenro", "#!/bin/sh\n[ \"$1\" = settings ] || exec '" + std::string(ZENRO_PROGRAM) +
                                "' \"$@\"\necho \"$@\" >> '" + folder + "/asked'\n[ $2 != layers ] || cp '" + folder +
                                "/green.ini' '" + project.string() +
                                "'\n[ $2 = layers ] && saved=true || saved=false\n"
                                "echo \"{\\\"saved\\\": $saved, \\\"file\\\": \\\"my.ini\\\"}\"\n"));
    fs::permissions(program.toStdString(), fs::perms::owner_all);
    Open({}, {"--sheet=40500000,3400000,40500100,3400100", "--project=" + Path("my.ini")});
    const auto coloured = [&] {
        const QImage seen = map().Seen();
        long count = 0;
        for (int y = 60; y < seen.height() - 40; ++y)  // without the bar of metres
            for (int x = 0; x < seen.width(); ++x) {
                const QColor c(seen.pixel(x, y));
                count += c.green() > c.red() + 20 && c.green() > c.blue() + 20 ? 1 : 0;
            }
        return count;
    };
    EXPECT_EQ(coloured(), 0);
    for (const char* action :
         {"Pen widths...", "Note classes...", "Note fonts...", "Palette...", "Layers and colours..."})
        Action(action)->trigger();
    EXPECT_TRUE(WaitFor([&] { return Messages().count("my.ini: written") == 1; }));
    EXPECT_TRUE(WaitFor([&] { return map().isWhole() && coloured() > 100; }));
    std::string asked;
    EXPECT_TRUE(WaitFor([&] {
        asked = ReadFile(zenro / "asked");
        return Count(asked, "settings ") == 5;
    }));
    EXPECT_EQ(Messages().count("my.ini: written"), 1);  // what was left as it was changes nothing
    for (const char* which : {"pens", "notes", "fonts", "colours", "layers"})
        EXPECT_THAT(asked, HasSubstr("settings " + std::string(which) + " --json --project=" + project.string()));
}

}  // namespace
