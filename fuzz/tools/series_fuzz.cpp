// Any text as a run of a series and as the log of one: read, or refused; chunks of what is read lie within its sheets.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/zenro/series/record.h"
#include "tools/zenro/series/run.h"

namespace {

void Write(const std::filesystem::path& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
}

}  // namespace

// The first byte says how much is the run's; the rest is its chunks and the log.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::tool;
    static const PrivateFolder folder;
    if (size == 0) return 0;
    const std::size_t first = 1 + (size - 1) * data[0] / 255;
    std::filesystem::create_directories(folder.path() / "logs");
    Write(folder.path() / "run-1.jsonl", data + 1, first - 1);
    Write(folder.path() / "run-1.chunks", data + first, size - first);
    Write(folder.path() / "logs" / "1.jsonl", data + first, size - first);
    try {
        const SeriesRun run = ReadRun(folder.path() / "run-1.jsonl");
        for (const auto& [from, to] : run.chunks)
            if (from > to || to >= run.sheets.size()) std::abort();
    } catch (const Failure&) {
    }
    long long broken = 0;
    ReadLogs(folder.path() / "logs", broken);
    return 0;
}
