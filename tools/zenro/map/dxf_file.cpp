#include "tools/zenro/map/dxf_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "dwg/format/bytes.h"
#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace

dwg::reader::Drawing ReadDrawingFile(const fs::path& path) {
    constexpr std::size_t kLargest = std::size_t{4} << 30;  // the offsets of the format have 32 bits
    const File file(OpenFile(path, "rb"));
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (file == nullptr || error || size > kLargest) {
        const std::string bytes = ReadWholeFile(path.string(), kLargest);  // it says what is wrong
        return dwg::reader::Drawing({bytes.begin(), bytes.end()});
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get()) != 0)
        throw Failure(kNoInput, Phrase("{0}: cannot be read: {1}.", path.string(), SystemError(errno)));
    return dwg::reader::Drawing(std::move(bytes));
}

dwg::dxf::Count WriteDxfFile(const dwg::reader::Drawing& drawing, const fs::path& path, const fs::path& target,
                             bool utf8) {
    File file(OpenFile(path, "wb"));
    dwg::dxf::Count count;
    const auto write = [&](std::string_view text) {
        CheckStop();
        return std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    };
    const bool whole = file != nullptr && WriteDxf(drawing, {utf8}, write, count) && std::fflush(file.get()) == 0;
    if (!whole) throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", target.string(), SystemError(errno)));
    return count;
}

bool SetDrawingView(const fs::path& path, const Page& page) {
    constexpr double kAround = 1.05;  // the view is a little higher than the sheet
    const double x1 = page.left(), y1 = page.bottom();
    const double width = page.Ground(page.paperWidth()), height = page.Ground(page.paperHeight());
    // From EXTMIN to VIEWSIZE the header variables have no gap.
    const double numbers[] = {x1, y1,         0.0,         x1 + width,     y1 + height,     0.0, x1,
                              y1, x1 + width, y1 + height, x1 + width / 2, y1 + height / 2, 0.0, height * kAround};
    constexpr long kExtents = 120, kAspect = 348, kUnits = 356;
    std::uint8_t bytes[sizeof numbers];
    for (std::size_t i = 0; i < std::size(numbers); ++i) dwg::Store(bytes + 8 * i, numbers[i]);
    std::uint8_t aspect[8];
    dwg::Store(aspect, width / height);
    constexpr std::uint8_t kDecimalMillimetres[] = {2, 0, 3, 0};  // LUNITS, LUPREC
    const File file(OpenFile(path, "rb+"));
    const auto put = [&](long at, const auto& data) {
        return std::fseek(file.get(), at, SEEK_SET) == 0 &&
               std::fwrite(data, 1, sizeof data, file.get()) == sizeof data;
    };
    return file != nullptr && put(kExtents, bytes) && put(kAspect, aspect) && put(kUnits, kDecimalMillimetres) &&
           std::fflush(file.get()) == 0;
}

}  // namespace zm::tool
