// The window speaks Chinese throughout.
#include "tools/view/phrases.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTranslator>
#include <filesystem>
#include <memory>
#include <regex>

#include "tests/support/scratch.h"

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

// The package qt6-translations-l10n has the texts.
TEST(Phrases, QtsOwnDialogsSpeakTheLanguageOfTheWindow) {
    int count = 1;
    char name[] = "phrases";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    const QByteArray before = qgetenv("ZENRO_LANGUAGE");
    for (const bool chinese : {true, false}) {
        qputenv("ZENRO_LANGUAGE", chinese ? "zh" : "en");
        const std::unique_ptr<QTranslator> texts(zm::view::TranslateQt());
        EXPECT_EQ(texts != nullptr, chinese);
        EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Save").toStdString(), chinese ? "保存" : "Save");
    }
    qputenv("ZENRO_LANGUAGE", before);
}
