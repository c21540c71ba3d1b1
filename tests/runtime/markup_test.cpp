#include "runtime/text/markup.h"

#include <gtest/gtest.h>

namespace {

TEST(Markup, HasNeitherTagsNorControlBytesOfTheData) {
    EXPECT_EQ(zm::HtmlText("<b a=\"1\">R&D</b>\n\t测量"), "&lt;b a=&quot;1&quot;&gt;R&amp;D&lt;/b&gt;\n\t测量");
    EXPECT_EQ(zm::HtmlText(std::string_view("a\x1b[31m\0z", 8)), "a?[31m?z");
    EXPECT_EQ(zm::EscapedMarkup("a\nb", ' '), "a b");
}

}  // namespace
