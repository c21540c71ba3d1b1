#include "tools/zenro_qt/png_file.h"

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <future>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "runtime/uses.h"

namespace zm::tool {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kStripBytes = std::size_t{4} << 20;  // of pixels that are compressed together
constexpr std::uint32_t kAdlerBase = 65521;
// Rows as they are: of lines on white paper they shrink better than differences to the row above.
constexpr std::uint8_t kNoFilter = 0;
constexpr std::array<std::uint8_t, 2> kZlibHeader = {0x78, 0x01};

void AddNumber(Bytes& to, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) to.push_back(static_cast<std::uint8_t>(value >> shift));
}

// One strip of rows as it goes into the file.
struct Strip {
    Bytes packed;             // deflate blocks, to a whole byte
    std::uint32_t adler = 1;  // of the rows
    std::size_t size = 0;     // of the same
};

// Adler-32 of two texts in a row, by those of each: the second's sums begin with the first's.
std::uint32_t Together(std::uint32_t first, std::uint32_t second, std::size_t sizeOfSecond) {
    const std::uint64_t low = (first & 0xFFFF) + (second & 0xFFFF) + kAdlerBase - 1;
    const std::uint64_t times = sizeOfSecond % kAdlerBase;
    const std::uint64_t high =
        (first >> 16) + (second >> 16) + times * ((first & 0xFFFF) + kAdlerBase - 1) % kAdlerBase;
    return static_cast<std::uint32_t>(low % kAdlerBase | high % kAdlerBase << 16);
}

// Rows from first to before last, each with its filter's number ahead.
Bytes RowsOf(const PngImage& image, int first, int last) {
    const auto width = static_cast<std::size_t>(image.width);
    Bytes rows((3 * width + 1) * static_cast<std::size_t>(last - first));
    std::uint8_t* to = rows.data();
    for (int y = first; y < last; ++y) {
        const std::uint32_t* row = image.pixels + y * image.wordsPerRow;
        *to++ = kNoFilter;
        for (std::size_t x = 0; x < width; ++x, to += 3) {
            to[0] = static_cast<std::uint8_t>(row[x] >> 16);
            to[1] = static_cast<std::uint8_t>(row[x] >> 8);
            to[2] = static_cast<std::uint8_t>(row[x]);
        }
    }
    return rows;
}

Strip Packed(const PngImage& image, int first, int last) {
    Bytes rows = RowsOf(image, first, last);
    Strip strip;
    strip.size = rows.size();
    strip.adler = isal_adler32(1, rows.data(), rows.size());
    Bytes work(ISAL_DEF_LVL2_DEFAULT);
    // Blocks of bytes that do not shrink are stored, with a few bytes each.
    strip.packed.resize(rows.size() + rows.size() / 1000 + 1024);
    isal_zstream stream;
    isal_deflate_init(&stream);
    stream.level = 2;
    stream.level_buf = work.data();
    stream.level_buf_size = static_cast<std::uint32_t>(work.size());
    stream.end_of_stream = last == image.height ? 1 : 0;
    stream.flush = SYNC_FLUSH;  // to a whole byte: strips follow one another
    stream.next_in = rows.data();
    stream.avail_in = static_cast<std::uint32_t>(rows.size());
    stream.next_out = strip.packed.data();
    stream.avail_out = static_cast<std::uint32_t>(strip.packed.size());
    const bool whole = isal_deflate(&stream) == COMP_OK && stream.avail_in == 0 && stream.avail_out > 0;
    strip.packed.resize(whole ? stream.total_out : 0);
    return strip;
}

class PngFile {
 public:
    explicit PngFile(const std::string& path) : m_file(std::fopen(path.c_str(), "wb")) { Look(m_file != nullptr); }
    ~PngFile() {
        if (m_file != nullptr) std::fclose(m_file);
    }
    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    bool good() const { return m_problem.empty(); }
    void Fail(const std::string& problem) {
        if (good()) m_problem = problem;
    }
    void Signature() { Write(Bytes{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}); }
    void Chunk(std::string_view type, const Bytes& data) {
        Bytes head;
        AddNumber(head, static_cast<std::uint32_t>(data.size()));
        head.insert(head.end(), type.begin(), type.end());
        const std::uint32_t crc = crc32_gzip_refl(crc32_gzip_refl(0, head.data() + 4, 4), data.data(), data.size());
        Write(head);
        Write(data);
        Bytes tail;
        AddNumber(tail, crc);
        Write(tail);
    }
    std::string Close() {
        std::FILE* file = m_file;
        m_file = nullptr;
        if (file != nullptr) Look(std::fclose(file) == 0);
        return m_problem;
    }

 private:
    void Look(bool done) {
        if (!done) Fail(std::strerror(errno));
    }
    void Write(const Bytes& bytes) {
        if (good()) Look(std::fwrite(bytes.data(), 1, bytes.size(), m_file) == bytes.size());
    }
    std::string m_problem;
    std::FILE* m_file;
};

void PutHeader(PngFile& file, const PngImage& image) {
    Bytes header;
    AddNumber(header, static_cast<std::uint32_t>(image.width));
    AddNumber(header, static_cast<std::uint32_t>(image.height));
    header.insert(header.end(), {8, 2, 0, 0, 0});  // bits, red green blue, deflate, filters, no interlacing
    file.Chunk("IHDR", header);
    if (image.dotsPerMetre > 0) {
        Bytes size;
        AddNumber(size, static_cast<std::uint32_t>(image.dotsPerMetre));
        AddNumber(size, static_cast<std::uint32_t>(image.dotsPerMetre));
        size.push_back(1);  // per metre
        file.Chunk("pHYs", size);
    }
    if (!image.title.empty()) {
        const std::string_view key("Title\0\0\0\0\0", 10);  // not compressed, no language, no translated key
        Bytes text(key.begin(), key.end());
        text.insert(text.end(), image.title.begin(), image.title.end());
        file.Chunk("iTXt", text);
    }
}

// The rows as one zlib stream, a strip in each chunk.
void PutRows(PngFile& file, const PngImage& image) {
    const int rows =
        static_cast<int>(std::max<std::size_t>(kStripBytes / (3 * static_cast<std::size_t>(image.width) + 1), 1));
    const unsigned workers = std::clamp(std::thread::hardware_concurrency(), 1U, 16U);
    std::uint32_t adler = 1;
    bool isFirst = true;
    for (int first = 0; first < image.height && file.good();) {
        std::vector<std::future<Strip>> strips;
        for (; strips.size() < workers && first < image.height; first += rows)
            strips.push_back(std::async(std::launch::async, Packed, std::cref(image), first,
                                        std::min(image.height - first, rows) + first));
        uses::Count(strips.size() > 1 ? uses::stripShared : uses::stripAlone, strips.size());
        for (std::future<Strip>& working : strips) {
            Strip strip = working.get();
            const bool isLast = &working == &strips.back() && first >= image.height;
            if (strip.packed.empty()) file.Fail("its pixels could not be compressed");
            adler = Together(adler, strip.adler, strip.size);
            if (std::exchange(isFirst, false))
                strip.packed.insert(strip.packed.begin(), kZlibHeader.begin(), kZlibHeader.end());
            if (isLast) AddNumber(strip.packed, adler);
            file.Chunk("IDAT", strip.packed);
        }
    }
}

}  // namespace

std::string WritePng(const std::string& path, const PngImage& image) {
    if (image.pixels == nullptr || image.width < 1 || image.height < 1) return "an image needs a width and a height";
    PngFile file(path);
    file.Signature();
    PutHeader(file, image);
    PutRows(file, image);
    file.Chunk("IEND", {});
    return file.Close();
}

}  // namespace zm::tool
