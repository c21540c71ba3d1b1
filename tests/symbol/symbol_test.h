// What the tests of symbols share: a library from a text, and a recording to draw on.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "runtime/gbk.h"
#include "symbol/state.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace zm::test {

/// Loads libraries and sees the messages.
class LibraryTest : public testing::Test {
 protected:
    LibraryTest() { symbol::ResetState(); }
    ~LibraryTest() override { symbol::ResetState(); }

    /// The GBK path text of a file in the scratch directory, with backslashes.
    std::string PathText(const std::string& name) const {
        const std::u8string utf8 = (m_scratch / name).u8string();
        std::string text = gbk::FromUtf8({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
        for (char& c : text)
            if (c == '/') c = '\\';
        return text;
    }

    /// Reads a library of this text.
    void Load(const std::string& text) {
        WriteFile(m_scratch / "symbol.dat", text);
        EXPECT_EQ(1, TsymbolInit(PathText("symbol.dat").c_str()));
    }

    /// status, position and number of a code.
    static std::vector<int> HeadOf(int code) {
        EXPECT_EQ(1, getsymbody(code));
        return {TheHeadStatus(), TheHeadPosition(), TheHeadNumber()};
    }

    std::vector<std::string> Messages() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : m_host.boxes) texts.push_back(box.text);
        return texts;
    }

    ScratchDir m_scratch;
    TestHost m_host;
};

}  // namespace zm::test
