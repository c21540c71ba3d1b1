// The window speaks Chinese throughout.
#include "tools/view/phrases.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "tests/support/scratch.h"
#include "tools/view/qt_phrases.h"

TEST(Phrases, EachHasItsChinese) {
    int phrases = 0;
    // Say("..."), and the texts of menus, docks and tools that are said where they are made.
    const std::regex said(R"re((?:Say|Add|dock|tool|line)\((?:[a-z]+, )?"([^"]+)")re");
    for (const auto& file : std::filesystem::directory_iterator(std::string(ZENRO_SOURCE_DIR) + "/tools/view")) {
        if (file.path().extension() != ".cpp") continue;
        const std::string text = zm::test::ReadFile(file.path());
        for (std::sregex_iterator i(text.begin(), text.end(), said), end; i != end; ++i, ++phrases)
            EXPECT_NE(zm::view::ChineseOf((*i)[1].str().c_str()), nullptr) << file.path().filename() << ": " << (*i)[1];
    }
    EXPECT_GT(phrases, 60);
}

TEST(Phrases, QtsOwnDialogsSpeakChineseToo) {
    const zm::view::QtPhrases phrases;
    const auto said = [&](const char* context, const char* text) {
        return phrases.translate(context, text, nullptr, -1).toStdString();
    };
    EXPECT_EQ(said("QFileDialog", "Look in:"), "查找范围：");
    EXPECT_EQ(said("QPlatformTheme", "Save"), "保存");
    EXPECT_EQ(said("QPrintPreviewDialog", "Fit width"), "适合宽度");
    EXPECT_EQ(said("QFileDialog", "a text that no dialog has"), "");
}
