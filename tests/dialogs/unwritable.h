// The tables that the dialogs save, for the tests of places that may not be written.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "runtime/files/files.h"
#include "tests/dialogs/dialog_test.h"

struct SavedTable {
    const char* name;
    int (*entry)();
    const char* folder;  // of FamilyDirs
    const char* file;
    const char* message;
    int change = 0;  // a button that changes the table, where one that is as it was is not written
};
inline void PrintTo(const SavedTable& table, std::ostream* out) {
    *out << table.name;
}

inline constexpr SavedTable kTables[] = {
    {"layers", OpenCengciDlg, "project", "map.ini", "the layers are not saved", 1055},
    {"widths", OpenLineWidthDlg, "module", "neworv.ini", "the pen widths are not saved"},
    {"classes", OpenNoteClassDlg, "module", "Orvnote.cod", "the note classes are not saved"},
    {"fonts", OpenNoteFontDlg, "module", "Orvnote.cod", "the note fonts are not saved"},
    {"colours", SetSysColorSet, "machine", "neworv.ini", "the colours are not saved"},
};

class Unwritable : public DialogTest, public testing::WithParamInterface<SavedTable> {
 protected:
    std::filesystem::path Folder() const {
        const std::string_view name = GetParam().folder;
        return name == "project" ? dirs.Project() : name == "module" ? dirs.Module() : dirs.Machine();
    }
    std::filesystem::path File() const { return Folder() / GetParam().file; }
    void PutAll() {
        std::filesystem::create_directories(dirs.Machine());
        PutProject("[LayerSet]\nLayers=1\nLayer1=A 100 200 1 1\n");
        PutWidths("[PenWidth]\nDefault=15\n110=10\n");
        PutColours("[PenColor]\n1=1,2,3\n");
        PutNotes("[NOTE CLASS]\nTOTAL=1\nC01=0,A,7,3,20,18,1,1,321,\n[FONT NAME]\n1=Face,Standard,Hztxt,0,\n");
        ReadCengCi();
    }
    /// What the user reads after OK, or 关闭.
    std::string MessageOfOk() {
        Run(GetParam().entry, [](Hand& hand) {
            if (GetParam().change != 0) hand.Press(GetParam().change);
            hand.Press(1);
            if (hand.IsOpen()) hand.Escape();
        });
        return Message();
    }
    /// The path as the library writes it, and what is not saved.
    void ExpectReported(const std::string& message) const {
        EXPECT_THAT(message, testing::HasSubstr(Utf8(zm::files::PathText(File())) + " could not be written: "));
        EXPECT_THAT(message, testing::HasSubstr(GetParam().message));
    }
    /// The names of what lies beside it.
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Folder()))
            names.push_back(Utf8(zm::files::PathText(entry.path().filename())));
        std::sort(names.begin(), names.end());
        return names;
    }
};
