// The DWG writer against the limit: the same bytes written in blocks of 1 MB, and in records through a file stream.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "dwg/format/file_layout.h"
#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "runtime/files/files.h"
#include "runtime/state.h"
#include "tools/make_template/template_drawing.h"

namespace {

namespace fs = std::filesystem;

constexpr int kLines = 1'000'000;
constexpr int kPolylines = 100'000;
constexpr int kVertices = 20;
constexpr int kBlockFaces = 500;  // 53 kB

// A folder with the template, entered for the time of one benchmark.
class Workshop {
 public:
    Workshop() : m_previous(fs::current_path()), m_dir(fs::temp_directory_path() / "zm_bench_dwg") {
        fs::create_directory(m_dir);
        fs::current_path(m_dir);
        zm::runtime::StartProjectFiles();
        zm::dwg::ResetState();
        const std::string drawing = zm::tool::TemplateDrawing();
        std::ofstream("acad.dwg", std::ios::binary).write(drawing.data(), static_cast<std::streamsize>(drawing.size()));
    }
    ~Workshop() {
        zm::dwg::ResetState();
        fs::current_path(m_previous);
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

 private:
    fs::path m_previous;
    fs::path m_dir;
};

void Open() {
    char name[] = "out.dwg";
    _LDBopendwg(name);
}

// Ends of lines, all different.
std::vector<double> Ends() {
    std::vector<double> ends(4 * kLines);
    double value = 500000.0;
    for (double& end : ends) end = value += 0.125;
    return ends;
}

void RemoveOutput(benchmark::State& run) {
    run.PauseTiming();
    fs::remove("out.dwg");
    run.ResumeTiming();
}

void BM_Lines(benchmark::State& run) {
    const Workshop workshop;
    const std::vector<double> ends = Ends();
    for (auto _ : run) {
        RemoveOutput(run);
        Open();
        for (const double* p = ends.data(); p != ends.data() + ends.size(); p += 4) _LDBline(p[0], p[1], p[2], p[3]);
        _LDBclosedwg();
    }
    run.SetItemsProcessed(run.iterations() * kLines);
}
BENCHMARK(BM_Lines)->Unit(benchmark::kMillisecond);

// As many bytes from one block, so that nothing but the writing counts.
void WriteInBlocks(benchmark::State& run, std::size_t bytes) {
    const Workshop workshop;
    const std::vector<char> block(std::size_t{1} << 20, 'x');
    for (auto _ : run) {
        RemoveOutput(run);
        std::FILE* file = std::fopen("out.dwg", "wb+");
        std::setvbuf(file, nullptr, _IONBF, 0);
        for (std::size_t left = bytes; left != 0;) {
            const std::size_t part = std::min(left, block.size());
            std::fwrite(block.data(), 1, part, file);
            left -= part;
        }
        std::fclose(file);
    }
}

void BM_LinesLimitBlocksOf1MB(benchmark::State& run) {
    WriteInBlocks(run, std::size_t{66} * kLines);
    run.SetItemsProcessed(run.iterations() * kLines);
}
BENCHMARK(BM_LinesLimitBlocksOf1MB)->Unit(benchmark::kMillisecond);

void BM_LinesThroughAStream(benchmark::State& run) {
    const Workshop workshop;
    const std::vector<double> ends = Ends();
    for (auto _ : run) {
        RemoveOutput(run);
        std::ofstream file("out.dwg", std::ios::binary);
        char record[66] = {};
        for (const double* p = ends.data(); p != ends.data() + ends.size(); p += 4) {
            std::memcpy(record + 18, p, 16);
            std::memcpy(record + 42, p + 2, 16);
            file.write(record, sizeof record);
        }
    }
    run.SetItemsProcessed(run.iterations() * kLines);
}
BENCHMARK(BM_LinesThroughAStream)->Unit(benchmark::kMillisecond);

void BM_Polylines(benchmark::State& run) {
    const Workshop workshop;
    const std::vector<double> ends = Ends();
    for (auto _ : run) {
        RemoveOutput(run);
        Open();
        for (int i = 0; i < kPolylines; ++i) _LDBpolyline(ends.data() + 2 * kVertices * (i % 50'000), kVertices);
        _LDBclosedwg();
    }
    run.SetItemsProcessed(run.iterations() * kPolylines);
}
BENCHMARK(BM_Polylines)->Unit(benchmark::kMillisecond);

void BM_PolylinesLimitBlocksOf1MB(benchmark::State& run) {
    WriteInBlocks(run, std::size_t{26 + 42 * kVertices + 30} * kPolylines);
    run.SetItemsProcessed(run.iterations() * kPolylines);
}
BENCHMARK(BM_PolylinesLimitBlocksOf1MB)->Unit(benchmark::kMillisecond);

// A block file of faces, which are copied whole with their layer and linetype looked up.
void WriteBlockFile() {
    Open();
    for (int i = 0; i < kBlockFaces; ++i) _LDBface3d(i, 0, 0, i + 1, 0, 0, i + 1, 1, 0, i, 1, 0);
    _LDBclosedwg();
    fs::rename("out.dwg", "block.dwg");
}

// Calls of the selection among many layers; the limit is one comparison of names for each layer.
void BM_SelectLayer(benchmark::State& run) {
    const Workshop workshop;
    Open();
    std::vector<std::string> names;
    for (int i = 0; i < run.range(0); ++i) names.push_back("LAYER" + std::to_string(1000 + i));
    for (std::string& name : names) _LDBsetlay(name.data());
    std::size_t at = 0;
    for (auto _ : run) {
        _LDBsetlay(names[at].data());
        at = (at + 7) % names.size();
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_SelectLayer)->Arg(8)->Arg(199);

void BM_SelectLayerByComparing(benchmark::State& run) {
    std::vector<std::string> names;
    for (int i = 0; i < run.range(0); ++i) names.push_back("LAYER" + std::to_string(1000 + i));
    std::size_t at = 0;
    for (auto _ : run) {
        std::size_t slot = 0;
        while (std::strcmp(names[slot].c_str(), names[at].c_str()) != 0) ++slot;
        benchmark::DoNotOptimize(slot);
        at = (at + 7) % names.size();
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_SelectLayerByComparing)->Arg(8)->Arg(199);

void BM_SelectLinetype(benchmark::State& run) {
    const Workshop workshop;
    Open();
    char names[][2] = {"0", "1", "2", "3", "4", "5", "6"};
    std::size_t at = 0;
    for (auto _ : run) {
        _LDBsetltype(names[at]);
        at = (at + 1) % std::size(names);
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_SelectLinetype);

void BM_Text(benchmark::State& run) {
    const Workshop workshop;
    for (auto _ : run) {
        RemoveOutput(run);
        Open();
        for (int i = 0; i < kPolylines; ++i) _LDBtext(1, 500000 + i, 4000000, 2.5, 30, "1234.56");
        _LDBclosedwg();
    }
    run.SetItemsProcessed(run.iterations() * kPolylines);
}
BENCHMARK(BM_Text)->Unit(benchmark::kMillisecond);

// The limit is reading the file's bytes.
void BM_CopyBlockFile(benchmark::State& run) {
    const Workshop workshop;
    WriteBlockFile();
    for (auto _ : run) {
        run.PauseTiming();
        zm::dwg::ResetState();
        Open();
        run.ResumeTiming();
        _LDBinsert(0, 0, 1, 1, 0, "block");
    }
    run.SetItemsProcessed(run.iterations() * kBlockFaces);
}
BENCHMARK(BM_CopyBlockFile)->Unit(benchmark::kMicrosecond);

void BM_CopyBlockFileLimitReading(benchmark::State& run) {
    const Workshop workshop;
    WriteBlockFile();
    for (auto _ : run) {
        std::ifstream file("block.dwg", std::ios::binary);
        std::vector<char> bytes(fs::file_size("block.dwg"));
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes.data());
    }
    run.SetItemsProcessed(run.iterations() * kBlockFaces);
}
BENCHMARK(BM_CopyBlockFileLimitReading)->Unit(benchmark::kMicrosecond);

// References to a block that is there already.
void BM_Reference(benchmark::State& run) {
    const Workshop workshop;
    WriteBlockFile();
    Open();
    for (auto _ : run) _LDBinsert(0, 0, 1, 1, 0, "block");
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_Reference)->Unit(benchmark::kMicrosecond);

}  // namespace
