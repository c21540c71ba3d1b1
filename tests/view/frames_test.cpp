// Messages between the window and its worker.
#include "tools/zenro/view/frames.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using namespace zm::tool;

class Frames : public testing::Test {
 protected:
    void SetUp() override { ASSERT_EQ(pipe(m_ends), 0); }
    void TearDown() override {
        close(m_ends[0]);
        if (m_ends[1] >= 0) close(m_ends[1]);
    }
    void Write(const std::string& bytes) const {
        ASSERT_EQ(write(m_ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    int m_ends[2] = {-1, -1};
};

}  // namespace

TEST_F(Frames, ComeAsTheyWereSent) {
    EXPECT_TRUE(SendFrame(m_ends[1], "one"));
    EXPECT_TRUE(SendFrame(m_ends[1], ""));
    EXPECT_TRUE(SendFrame(m_ends[1], std::string(300, 'x')));
    FrameReader reader(m_ends[0]);
    ASSERT_TRUE(reader.Take());
    EXPECT_EQ(reader.Next(), "one");
    EXPECT_EQ(reader.Next(), "");
    EXPECT_EQ(reader.Next(), std::string(300, 'x'));
    EXPECT_EQ(reader.Next(), std::nullopt);
}

TEST_F(Frames, WaitUntilTheyAreWhole) {
    FrameReader reader(m_ends[0]);
    Write(std::string("\x03\0", 2));
    ASSERT_TRUE(reader.Take());
    EXPECT_EQ(reader.Next(), std::nullopt);
    Write(std::string("\0\0ab", 4));
    ASSERT_TRUE(reader.Take());
    EXPECT_EQ(reader.Next(), std::nullopt);
    Write("c");
    ASSERT_TRUE(reader.Take());
    EXPECT_EQ(reader.Next(), "abc");
}

TEST_F(Frames, OfAnImpossibleLengthAreTheEnd) {
    FrameReader reader(m_ends[0]);
    Write("\xff\xff\xff\xff");
    EXPECT_FALSE(reader.Take());
}

TEST_F(Frames, EndWithTheirPipe) {
    FrameReader reader(m_ends[0]);
    close(m_ends[1]);
    m_ends[1] = -1;
    EXPECT_FALSE(reader.Take());
}
