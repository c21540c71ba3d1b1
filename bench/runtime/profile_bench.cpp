// Reading keys of profile files: the service against a plain open, scan and close for each key, and against the limit,
// a map that is in memory already.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_map>

#include "runtime/files/files.h"
#include "runtime/profile/profile.h"
#include "runtime/profile/profile_text.h"
#include "runtime/text/numbers.h"
#include "tests/support/scratch.h"

namespace {

using zm::numbers::Text;

constexpr int kSections = 4;

// A file of so many keys in the last of four sections.
struct File {
    explicit File(int keys) {
        for (int s = 1; s <= kSections; ++s) {
            bytes += Text("[Section%d]\r\n", s);
            for (int i = 1; i <= keys; ++i) bytes += Text("%d=%d\r\n", i, i % 250);
        }
        zm::test::WriteFile(scratch / "a.ini", bytes);
        path = (scratch / "a.ini").string();
        gbk = zm::files::PathText(scratch / "a.ini");
        for (int i = 1; i <= keys; ++i) names.push_back(Text("%d", i));
    }
    zm::test::ScratchDir scratch;
    std::string bytes;
    std::string path;
    std::string gbk;
    std::vector<std::string> names;
};

void BM_ReadEachKey(benchmark::State& run) {
    const File file(static_cast<int>(run.range(0)));
    for (auto _ : run)
        for (const std::string& name : file.names)
            benchmark::DoNotOptimize(zm::profile::GetInt("Section4", name.c_str(), 255, file.gbk.c_str()));
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_ReadEachKey)->Arg(99)->Arg(999);

// The peer: what a service without a memory does.
int ScanFor(const char* path, const char* section, const char* key) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return 255;
    char line[256];
    bool inside = false;
    int value = 255;
    const std::size_t length = std::strlen(key);
    while (std::fgets(line, sizeof line, file) != nullptr) {
        if (line[0] == '[') {
            inside = std::strncmp(line + 1, section, std::strlen(section)) == 0;
        } else if (inside && std::strncmp(line, key, length) == 0 && line[length] == '=') {
            value = std::atoi(line + length + 1);
            break;
        }
    }
    std::fclose(file);
    return value;
}

void BM_OpenScanCloseForEachKey(benchmark::State& run) {
    const File file(static_cast<int>(run.range(0)));
    for (auto _ : run)
        for (const std::string& name : file.names)
            benchmark::DoNotOptimize(ScanFor(file.path.c_str(), "Section4", name.c_str()));
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_OpenScanCloseForEachKey)->Arg(99)->Arg(999);

// The limit: no file is asked after at all.
void BM_MapInMemory(benchmark::State& run) {
    const File file(static_cast<int>(run.range(0)));
    std::unordered_map<std::string, std::string> map;
    for (const std::string& name : file.names) map[name] = name;
    for (auto _ : run)
        for (const std::string& name : file.names) benchmark::DoNotOptimize(std::atoi(map.find(name)->second.c_str()));
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_MapInMemory)->Arg(99)->Arg(999);

void BM_Parse(benchmark::State& run) {
    const File file(static_cast<int>(run.range(0)));
    for (auto _ : run) {
        const zm::profile::Text text(file.bytes);
        benchmark::DoNotOptimize(text.Find("Section4", "7"));
    }
    run.SetBytesProcessed(run.iterations() * static_cast<std::int64_t>(file.bytes.size()));
}
BENCHMARK(BM_Parse)->Arg(999)->Arg(99999);

// The limit of parsing: one pass that finds the line ends.
void BM_FindLineEnds(benchmark::State& run) {
    const File file(static_cast<int>(run.range(0)));
    for (auto _ : run) {
        std::size_t lines = 0;
        for (std::size_t at = 0; (at = file.bytes.find('\n', at)) != std::string::npos; ++at) ++lines;
        benchmark::DoNotOptimize(lines);
    }
    run.SetBytesProcessed(run.iterations() * static_cast<std::int64_t>(file.bytes.size()));
}
BENCHMARK(BM_FindLineEnds)->Arg(999)->Arg(99999);

// Replaces 999 values, each write by itself or all in a batch.
void BM_WriteEachKey(benchmark::State& run) {
    const File file(999);
    int value = 0;
    for (auto _ : run) {
        ++value;
        for (int i = 0; i < 20; ++i)
            zm::profile::WriteString("Section4", file.names[static_cast<std::size_t>(i)].c_str(),
                                     Text("%d", value).c_str(), file.gbk.c_str());
    }
    run.SetItemsProcessed(run.iterations() * 20);
}
BENCHMARK(BM_WriteEachKey);

void BM_WriteInABatch(benchmark::State& run) {
    const File file(999);
    int value = 0;
    for (auto _ : run) {
        ++value;
        const zm::profile::Batch together;
        for (const std::string& name : file.names)
            zm::profile::WriteString("Section4", name.c_str(), Text("%d", value).c_str(), file.gbk.c_str());
    }
    run.SetItemsProcessed(run.iterations() * 999);
}
BENCHMARK(BM_WriteInABatch);

}  // namespace
