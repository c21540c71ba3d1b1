// What the program says to a reader of Chinese, by the locale; and English to everybody else.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>

#include "runtime/text/gbk.h"
#include "tests/zenro/program.h"
#include "tools/kit/message_catalogue.h"
#include "tools/kit/translation.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;

std::vector<std::string> Locale(const std::string& name) {
    return {"ZENRO_LANGUAGE=", "LANGUAGE=", "LC_MESSAGES=", "LANG=", "LC_ALL=" + name};
}

// Six roads with a code that no library has, in a plane.
std::string SixLines() {
    std::string features;
    for (int i = 0; i < 6; ++i) {
        const std::string y = std::to_string(3456010 + i);
        features += (i > 0 ? "," : "") + LineFeature("[40512010," + y + "],[40512090," + y + "]", "\"a\":1");
    }
    return Collection(features);
}

bool HasChinese(const std::string& text) {
    for (std::size_t i = 0; i + 2 < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead >= 0xE4 && lead <= 0xE9) return true;
    }
    return false;
}

class Language : public testing::Test {
 protected:
    void SetUp() override {
        if (!fs::exists(ZENRO_CATALOGUE)) GTEST_SKIP() << "msgfmt (package gettext) was missing when this was built";
    }
    Outcome Chinese(const std::vector<std::string>& arguments, const std::string& input = {}) const {
        return m_zenro.Run(arguments, input, Locale("zh_CN.UTF-8"));
    }
    std::string DrawSix(const std::vector<std::string>& locale, const std::vector<std::string>& more = {}) const {
        m_zenro.File("in.geojson", SixLines());
        m_zenro.File("a.rules", "* -> symbol 997\n");
        std::vector<std::string> arguments = {
            "draw",       "in.geojson", "-o",   "out.svg", "--rules",
            "a.rules",    "--scale",    "1000", "--sheet", "40512000,3456000,40512100,3456100",
            "--overwrite"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Outcome r = m_zenro.Run(arguments, {}, locale);
        EXPECT_EQ(r.status, 4) << r.err;
        return r.err + r.out;
    }
    Program m_zenro;
};

TEST_F(Language, HelpIsChinese) {
    const Outcome all = Chinese({"--help"});
    EXPECT_EQ(all.status, 0);
    EXPECT_NE(all.out.find("用法: zenro [选项] 子命令\n"), std::string::npos) << all.out;
    EXPECT_NE(all.out.find("  -h,--help                   显示本帮助后退出\n"), std::string::npos) << all.out;
    EXPECT_NE(all.out.find("退出状态：0 完成"), std::string::npos) << all.out;
    const Outcome draw = Chinese({"draw", "--help"});
    EXPECT_NE(draw.out.find("  -o,--output 文本 ... 必需   输出；"), std::string::npos) << draw.out;
    EXPECT_NE(draw.out.find("=按数据\n"), std::string::npos) << draw.out;
}

// The commands that a help lists, and those below them.
void HelpOfAll(const std::function<std::string(std::vector<std::string>)>& help, const std::vector<std::string>& path,
               std::string& all) {
    const std::string text = help(path);
    all += text;
    const std::size_t list = text.find("子命令:\n");
    if (list == std::string::npos) return;
    static const std::regex kCommand("\n  ([a-z][a-z-]*) ");
    const std::string below = text.substr(list);
    for (std::sregex_iterator it(below.begin(), below.end(), kCommand), end; it != end; ++it) {
        std::vector<std::string> next = path;
        next.push_back((*it)[1]);
        HelpOfAll(help, next, all);
    }
}

TEST_F(Language, NoCommandsHelpHasALineOfEnglish) {
    std::string all;
    HelpOfAll(
        [&](std::vector<std::string> path) {
            path.emplace_back("--help");
            const Outcome r = Chinese(path);
            EXPECT_EQ(r.status, 0) << path.front();
            return r.out;
        },
        {}, all);
    EXPECT_GT(Count(all, "用法: zenro"), 35);
    static const std::regex kEnglish("[a-z]{3,} [a-z]{3,}");
    std::istringstream lines(all);
    for (std::string line; std::getline(lines, line);)
        EXPECT_TRUE(HasChinese(line) || !std::regex_search(line, kEnglish)) << line;
}

TEST_F(Language, ErrorsWarningsAndNotesAreChinese) {
    EXPECT_EQ(Chinese({"draw", "没有.shp", "-o", "y.svg", "--scale", "500"}).err,
              "提示：未给出 --rules：各要素以最简形式绘制。\n错误：没有.shp：没有此文件。请检查路径。\n");
    EXPECT_EQ(Chinese({"drw"}).err, "错误：缺少子命令。请看：zenro --help\n");
    EXPECT_EQ(Chinese({"draw", "x", "-o", "y.svg", "--scale", "3"}).err,
              "错误：--scale：值 3 不在 10.000000 至 100000000.000000 之间。请看：zenro --help\n");
    const std::string reported = DrawSix(Locale("zh_CN.UTF-8"));
    EXPECT_NE(reported.find("警告：in.geojson: things：要素 0：符号库中没有符号 997；线以普通线绘制。\n"),
              std::string::npos)
        << reported;
    EXPECT_NE(reported.find("警告：未知的符号编码：另有 1 条同类消息。\n"), std::string::npos) << reported;
}

TEST_F(Language, KeysOfJsonStayAsTheyAre) {
    const std::string reported = DrawSix(Locale("zh_CN.UTF-8"), {"--json", "--quiet"});
    const auto json = nlohmann::json::parse(reported);
    EXPECT_EQ(json.at("reports").at("unknown symbol codes"), 6);
    EXPECT_EQ(json.at("features"), 6);
}

TEST_F(Language, FindingsAboutADrawingAreChinese) {
    DrawSix(Locale("C"), {"-o", "d.dwg"});
    std::fstream drawing(m_zenro / "d.dwg", std::ios::binary | std::ios::in | std::ios::out);
    drawing.seekp(58);  // the third word of the table of layers
    drawing.put(1);
    drawing.close();
    const Outcome check = Chinese({"dwg", "check", "d.dwg"});
    EXPECT_EQ(check.status, 1);
    EXPECT_NE(check.out.find("图层表的第三个字为 1；计入后记录数将为 "), std::string::npos) << check.out;
    const Outcome json = Chinese({"dwg", "check", "d.dwg", "--json"});
    EXPECT_NE(json.out.find("the third word of the layer table is 1"), std::string::npos) << json.out;
}

TEST_F(Language, AFeatureIsExplainedByItsNumber) {
    const std::string reported = DrawSix(Locale("zh_CN.UTF-8"), {"--explain", "3", "--quiet"});
    EXPECT_NE(reported.find("in.geojson: things：要素 3，线：a.rules:1: * -> 符号 997"), std::string::npos) << reported;
}

TEST_F(Language, WithoutAChineseLocaleItIsEnglish) {
    for (const char* name : {"C", "POSIX", "C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8", "zh_TW.UTF-8", ""})
        EXPECT_EQ(m_zenro.Run({"drw"}, {}, Locale(name)).err, "error: A subcommand is required. Try: zenro --help\n")
            << name;
    EXPECT_NE(DrawSix(Locale("C"))
                  .find("warning: in.geojson: things: feature 0: symbol 997 is not in the symbol library; lines are "
                        "drawn plain.\n"),
              std::string::npos);
}

// Containers have few locales, and the language is known by the name alone.
TEST_F(Language, NeedsNoGeneratedLocale) {
    for (const char* name : {"zh_CN", "zh_SG.UTF-8", "zh_CN.utf8@x", "zh"})
        EXPECT_TRUE(HasChinese(zm::gbk::ToUtf8(m_zenro.Run({"drw"}, {}, Locale(name)).err)) ||
                    HasChinese(m_zenro.Run({"drw"}, {}, Locale(name)).err))
            << name;
}

TEST_F(Language, IsChosenAsGettextDoes) {
    const auto speaks = [&](const std::vector<std::string>& environment) {
        std::vector<std::string> all = {"ZENRO_LANGUAGE=", "LANGUAGE=", "LC_ALL=", "LC_MESSAGES=", "LANG="};
        all.insert(all.end(), environment.begin(), environment.end());
        return HasChinese(m_zenro.Run({"drw"}, {}, all).err);
    };
    EXPECT_TRUE(speaks({"LANG=zh_CN.UTF-8"}));
    EXPECT_FALSE(speaks({"LANG=zh_CN.UTF-8", "LC_MESSAGES=C.UTF-8"}));
    EXPECT_TRUE(speaks({"LANG=de_DE.UTF-8", "LC_MESSAGES=zh_CN.UTF-8"}));
    EXPECT_FALSE(speaks({"LC_ALL=C", "LC_MESSAGES=zh_CN.UTF-8", "LANG=zh_CN.UTF-8"}));
    EXPECT_TRUE(speaks({"LANG=de_DE.UTF-8", "LANGUAGE=de:zh_CN"}));
    EXPECT_FALSE(speaks({"LANG=zh_CN.UTF-8", "LANGUAGE=en:zh_CN"}));
    EXPECT_FALSE(speaks({"LANG=C", "LANGUAGE=zh_CN"}));
    EXPECT_TRUE(speaks({"LANG=C", "ZENRO_LANGUAGE=zh_CN"}));
    EXPECT_FALSE(speaks({"LANG=zh_CN.UTF-8", "ZENRO_LANGUAGE=en"}));
    EXPECT_FALSE(speaks({"LANG=../../zh_CN"}));
}

TEST_F(Language, ATerminalOfGbkGetsGbk) {
    const Outcome r = m_zenro.Run({"drw"}, {}, Locale("zh_CN.GB18030"));
    EXPECT_EQ(zm::gbk::ToUtf8(r.err), "错误：缺少子命令。请看：zenro --help\n");
    const Outcome help = m_zenro.Run({"--help"}, {}, Locale("zh_CN.GB18030"));
    EXPECT_NE(zm::gbk::ToUtf8(help.out).find("用法: zenro"), std::string::npos);
}

TEST_F(Language, NumbersKeepTheDecimalPoint) {
    EXPECT_EQ(Chinese({"coord", "to-plane"}, "30.5 120.75\n").out,
              m_zenro.Run({"coord", "to-plane"}, "30.5 120.75\n").out);
}

// Progress begins after a second on a terminal; the data comes late, so that it does.
TEST_F(Language, ProgressIsChinese) {
    int terminal = -1, slave = -1, input[2];
    if (openpty(&terminal, &slave, nullptr, nullptr, nullptr) != 0) GTEST_SKIP() << "no pseudo-terminal";
    ASSERT_EQ(pipe(input), 0);
    const std::string folder = m_zenro.folder().string();
    const pid_t child = fork();
    if (child == 0) {
        dup2(input[0], 0);
        dup2(open("/dev/null", O_WRONLY), 1);
        dup2(slave, 2);
        close(input[1]);
        setenv("ZENRO_LANGUAGE", "zh_CN", 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        execl(ZENRO_PROGRAM, "zenro", "draw", "-", "-o", (folder + "/p.svg").c_str(), "--scale", "1000", nullptr);
        _exit(127);
    }
    close(slave);
    close(input[0]);
    const std::string data = SixLines();
    std::string shown;
    char block[512];
    bool sent = false;
    for (ssize_t n = 0; (n = read(terminal, block, sizeof block)) > 0;) {
        shown.append(block, static_cast<std::size_t>(n));
        if (sent || shown.find('\n') == std::string::npos) continue;  // its first note comes before it reads
        usleep(1100000);
        EXPECT_EQ(write(input[1], data.data(), data.size()), static_cast<ssize_t>(data.size()));
        close(input[1]);
        sent = true;
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    EXPECT_NE(shown.find("zenro：正在读取"), std::string::npos) << shown;
    EXPECT_NE(shown.find("提示：未给出 --rules"), std::string::npos) << shown;
}

// A message that reads a name, a place and a count: pieces may change their order, and braces in them stay.
TEST(Phrases, PiecesStandWhereTheTranslatorPutsThem) {
    using zm::tool::Filled;
    using zm::tool::Phrase;
    EXPECT_EQ(Filled("{1} of {0}, {1}", {"a", "b"}), "b of a, b");
    EXPECT_EQ(Filled("{0}{1}{2}", {-7, 'c', std::string("{0}")}), "-7c{0}");
    EXPECT_EQ(Filled("{} {x} { {3} {0", {"a"}), "{} {x} { {3} {0");
    EXPECT_EQ(Phrase("{0}: {1} more", "x", static_cast<unsigned long long>(-1)), "x: 18446744073709551615 more");
    EXPECT_EQ(Filled("{0}", {std::numeric_limits<long long>::min()}), "-9223372036854775808");
}

TEST_F(Language, ADamagedCatalogueIsNone) {
    std::ifstream in(ZENRO_CATALOGUE, std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), {});
    const zm::tool::MessageCatalogue good{fs::path(ZENRO_CATALOGUE)};
    ASSERT_NE(good.Find("Usage"), nullptr);
    EXPECT_STREQ(good.Find("Usage"), "用法");
    EXPECT_EQ(good.Find(""), nullptr);
    EXPECT_EQ(good.Find("no such text"), nullptr);
    const auto find = [&](const std::string& bytes) {
        const zm::tool::MessageCatalogue catalogue{fs::path(m_zenro.File("x.mo", bytes))};
        for (const char* text : {"Usage", "", "zzz", "-"}) catalogue.Find(text);
        return !catalogue.empty();
    };
    EXPECT_TRUE(find(whole));
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{3}, std::size_t{27}, std::size_t{28}, whole.size() / 2, whole.size() - 1})
        EXPECT_FALSE(find(whole.substr(0, size))) << size;
    for (std::size_t at = 0; at < 400; ++at) {  // header and the first entries of the table
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0xFF);
        find(damaged);  // sound or none, and nothing is read outside of it
    }
}

}  // namespace
