// What the program makes of the library's boxes.
#include "tools/kit/tool_host.h"

#include <gtest/gtest.h>

#include <new>

namespace {

using namespace zm::tool;

TEST(ToolHost, ABoxIsAWarning) {
    Report report;
    report.SetQuiet(true);
    ToolHost host(report);
    EXPECT_EQ(IDOK, host.ShowBox("symbol.dat code=5 err", "", MB_OK));
    EXPECT_EQ("symbol.dat code=5 err", host.lastMessage());
    EXPECT_EQ(1, host.messages());
}

// After each of these the library goes on without a line, a hatch or its table; a map that lacks them must not be kept.
TEST(ToolHost, ABoxThatSaysMemoryRanOutEndsTheWork) {
    Report report;
    report.SetQuiet(true);
    ToolHost host(report);
    for (const char* text : {"mem err", "no space", "symwin space err", "cod mem err", "font info mem err",
                             "\xC4\xDA\xB4\xE6\xB2\xBB\xD7\xE3"})
        EXPECT_THROW(host.ShowBox(text, "", MB_OK), std::bad_alloc) << text;
}

}  // namespace
