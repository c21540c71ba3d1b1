// Whole runs of zenro beside ogr2ogr, which writes the same features to DXF without any symbol. Items are features.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int kLines = 20000;  // of 20 vertices each
constexpr int kVertices = 20;

// One folder for the program's life, with one file of lines like streets of a town.
class Bench {
 public:
    Bench() : m_folder(fs::temp_directory_path() / ("zenro-bench-" + std::to_string(getpid()))) {
        fs::create_directories(m_folder);
        std::ofstream out(m_folder / "lines.geojson");
        out << "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
               "\"urn:ogc:def:crs:EPSG::4528\"}},\"features\":[";
        std::mt19937_64 engine(7);
        const auto real = [&](double low, double high) {
            return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
        };
        for (int i = 0; i < kLines; ++i) {
            double x = real(40510000, 40511900), y = real(3456000, 3457900);
            out << (i > 0 ? ",\n" : "")
                << R"({"type":"Feature","properties":{"a":1},"geometry":{"type":"LineString","coordinates":[)";
            for (int k = 0; k < kVertices; ++k) {
                out << (k > 0 ? "," : "") << '[' << std::to_string(x) << ',' << std::to_string(y) << ']';
                x += real(0.0, 5.0);
                y += real(-2.0, 5.0);
            }
            out << "]}}";
        }
        out << "]}\n";
        for (const auto& [name, rule] : {std::pair{"plain", "* -> symbol 250\n"}, {"pattern", "* -> symbol 241\n"}})
            std::ofstream(m_folder / (std::string(name) + ".rules")) << rule;
    }
    ~Bench() {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }
    const fs::path& folder() const { return m_folder; }

 private:
    fs::path m_folder;
};

void Run(benchmark::State& state, const std::string& command, int features) {
    static const Bench bench;
    const std::string whole = "cd '" + bench.folder().string() + "' && rm -f out.* && " + command + " >/dev/null 2>&1";
    for (auto _ : state)
        if (std::system(whole.c_str()) != 0) return state.SkipWithError(("cannot run: " + command).c_str());
    state.SetItemsProcessed(state.iterations() * features);
}

void BM_LinesToDwg(benchmark::State& state) {
    Run(state, ZENRO_PROGRAM " draw lines.geojson --rules ./plain.rules --scale 2000 -o out.dwg", kLines);
}
BENCHMARK(BM_LinesToDwg)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LinesToDwgAsARoadPattern(benchmark::State& state) {
    Run(state, ZENRO_PROGRAM " draw lines.geojson --rules ./pattern.rules --scale 2000 -o out.dwg", kLines);
}
BENCHMARK(BM_LinesToDwgAsARoadPattern)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LinesToDxfByOgr2ogr(benchmark::State& state) {
    Run(state, "ogr2ogr -f DXF out.dxf lines.geojson", kLines);
}
BENCHMARK(BM_LinesToDxfByOgr2ogr)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LinesToRecording(benchmark::State& state) {
    Run(state, ZENRO_PROGRAM " draw lines.geojson --rules ./plain.rules --scale 2000 -o out.rec", kLines);
}
BENCHMARK(BM_LinesToRecording)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_DemoSheetToDwg(benchmark::State& state) {
    Run(state, ZENRO_PROGRAM " draw " ZENRO_DEMO_DATA "/*.geojson --rules demo --scale 1000 -o out.dwg", 1);
}
BENCHMARK(BM_DemoSheetToDwg)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
