// What the tests of the dialogs share: the four directories, a host that shows a dialog to the test, state at its start.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "config/state.h"
#include "runtime/text/gbk.h"
#include "tests/dialogs/session.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/config.h"
#include "zenromath/dialogs.h"
#include "zenromath/runtime.h"

class DialogTest : public testing::Test {
 protected:
    using Hand = zm::vectors::Hand;
    using Play = std::function<void(Hand&)>;

    /// Lets the test play on the logic; refuses where there is nothing to play.
    class Host : public zm::test::TestHost {
     public:
        bool RunDialog(zm::dialogs::Dialog& dialog) override {
            shown = &dialog;
            templateId = dialog.layout().id;
            if (!play) return false;
            sourceWhileOpen = source;
            if (goesAway) {
                dialog.Open();
                return true;
            }
            return zm::vectors::Session::OnLogic(dialog, [this](Hand& hand) { play(hand); });
        }
        void* PutResourceSource(void* next) override { return std::exchange(source, next); }
        void* LibraryModule() override { return &library; }
        bool PickFont(HWND, LOGFONTA& font) override { return !pick || pick(font); }

        Play play;
        bool goesAway = false;  // the window goes away without an answer
        std::function<bool(LOGFONTA&)> pick;
        zm::dialogs::Dialog* shown = nullptr;
        int templateId = 0;
        char library = 0;
        char application = 0;
        void* source = &application;
        void* sourceWhileOpen = nullptr;
    };

    DialogTest() {
        zm::config::ResetState();
        dirs.NameProject("map");
    }
    ~DialogTest() override { zm::config::ResetState(); }

    static std::string Gbk(const char* utf8) { return zm::gbk::FromUtf8(utf8); }
    static std::string Utf8(const std::string& gbk) { return zm::gbk::ToUtf8(gbk); }
    void PutProject(const char* utf8) { zm::test::WriteFile(dirs.Project("map.ini"), Gbk(utf8)); }
    void PutWidths(const char* utf8) { zm::test::WriteFile(dirs.Module("neworv.ini"), Gbk(utf8)); }
    void PutColours(const char* utf8) { zm::test::WriteFile(dirs.Machine("neworv.ini"), Gbk(utf8)); }
    void PutNotes(const char* utf8) {
        zm::test::WriteFile(dirs.Module("Orvnote.cod"), Gbk(utf8));
        notes.reset();  // its end would clear the global object
        notes = std::make_unique<TqNoteLayBase>();
    }
    std::string Saved(const std::filesystem::path& path) const { return Utf8(zm::test::ReadFile(path)); }
    /// A folder where a file should be: nothing can be written under that name.
    static void Block(const std::filesystem::path& path) {
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path / "in the way");
    }

    int Run(int (*entry)(), Play play) {
        host.play = std::move(play);
        return entry();
    }
    /// The only message since the last call, in UTF-8; empty if there was none, joined if there were more.
    std::string Message() {
        std::string all;
        for (const auto& box : host.boxes) all += (all.empty() ? "" : " | ") + Utf8(box.text);
        host.boxes.clear();
        return all;
    }
    static void Type(Hand& hand, int id, const char* utf8) { hand.Type(id, Gbk(utf8)); }
    static std::string Row(const Hand& hand, int id, int row) {
        return Utf8(hand.Rows(id).at(static_cast<std::size_t>(row)));
    }
    static int Count(const Hand& hand, int id) { return static_cast<int>(hand.Rows(id).size()); }

    zm::test::FamilyDirs dirs;
    Host host;
    std::unique_ptr<TqNoteLayBase> notes;
};
