// PNG files of zenro, read back by Qt.
#include "tools/zenro_qt/png_file.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cerrno>
#include <cstring>
#include <thread>
#include <vector>

#include "runtime/uses.h"
#include "tests/support/random.h"
#include "tests/support/scratch.h"

namespace {

using zm::test::Random;
using zm::tool::PngImage;
using zm::tool::WritePng;

class PngFile : public testing::Test {
 protected:
    // Writes an image of these pixels and reads it back.
    QImage Written(int width, int height, const std::vector<std::uint32_t>& pixels, int wordsPerRow) {
        const PngImage image = {pixels.data(), wordsPerRow, width, height, 10000, "\xE5\x85\xAC\xE8\xB7\xAF 1"};
        const std::string path = (m_dir / "map.png").string();
        EXPECT_EQ(WritePng(path, image), "");
        QImage read;
        EXPECT_TRUE(read.load(QString::fromStdString(path), "PNG"));
        return read.convertToFormat(QImage::Format_RGB32);
    }
    zm::test::ScratchDir m_dir;
};

TEST_F(PngFile, HoldsThePixelsTheSizeOnPaperAndTheTitle) {
    const std::vector<std::uint32_t> pixels = {0xFF0000, 0x00FF00, 7, 0x0000FF, 0xFFFFFF, 7};
    const QImage read = Written(2, 2, pixels, 3);
    ASSERT_EQ(read.size(), QSize(2, 2));
    EXPECT_EQ(read.pixel(0, 0), 0xFFFF0000);
    EXPECT_EQ(read.pixel(1, 0), 0xFF00FF00);
    EXPECT_EQ(read.pixel(0, 1), 0xFF0000FF);
    EXPECT_EQ(read.pixel(1, 1), 0xFFFFFFFF);
    EXPECT_EQ(read.dotsPerMeterX(), 10000);
    EXPECT_EQ(read.dotsPerMeterY(), 10000);
    EXPECT_EQ(read.text("Title").toStdString(), "\xE5\x85\xAC\xE8\xB7\xAF 1");
}

// Noise does not shrink; white does to almost nothing. Several strips, the last one shorter.
TEST_F(PngFile, OfManyStripsHoldsEachPixel) {
    ZM_TRACE_SEED();
    Random random(91);
    constexpr int kWidth = 3001, kHeight = 2203;
    std::vector<std::uint32_t> pixels(std::size_t{kWidth} * kHeight, 0xFFFFFF);
    for (int y = 0; y < kHeight; ++y)
        if (y % 700 < 300)
            for (int x = 0; x < kWidth; ++x)
                pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] =
                    static_cast<std::uint32_t>(random.Bits() & 0xFFFFFF);
    const QImage read = Written(kWidth, kHeight, pixels, kWidth);
    ASSERT_EQ(read.size(), QSize(kWidth, kHeight));
    for (int y = 0; y < kHeight; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(read.constScanLine(y));
        for (int x = 0; x < kWidth; ++x)
            ASSERT_EQ(row[x] & 0xFFFFFF, pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)])
                << x << ' ' << y;
    }
}

#ifdef ZM_COUNT_USES
TEST_F(PngFile, OfManyStripsIsPackedOnAllCores) {
    using namespace zm::uses;
    const auto packed = [&](int height) {
        counts[stripShared] = counts[stripAlone] = 0;
        const std::vector<std::uint32_t> pixels(std::size_t{2000} * static_cast<std::size_t>(height), 0xFFFFFF);
        Written(2000, height, pixels, 2000);
        return std::pair(counts[stripShared], counts[stripAlone]);
    };
    using Taken = std::pair<std::uint64_t, std::uint64_t>;
    EXPECT_EQ(packed(100), Taken(0, 1));
    if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "one core";
    EXPECT_GE(packed(2600).first, 2u);  // four strips of 699 rows
}
#endif

TEST_F(PngFile, ThatCannotBeWrittenSaysWhy) {
    const std::uint32_t pixel = 0;
    const PngImage image = {&pixel, 1, 1, 1, 0, ""};
    EXPECT_EQ(WritePng((m_dir / "no such folder/map.png").string(), image), std::strerror(ENOENT));
    EXPECT_NE(WritePng((m_dir / "map.png").string(), {}), "");
#ifdef __linux__
    EXPECT_EQ(WritePng("/dev/full", image), std::strerror(ENOSPC));
#endif
}

}  // namespace
