// Whole runs of zenro beside ogr2ogr, which writes the same features to DXF without any symbol, and beside Mapnik,
// which draws them with a like pattern of dashes and markers to an image of the same size. Items are features.
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

// A fence at 1:5000 on 10 pixels a millimetre: dashes with a marker every 10 mm. Antialiased as zenro's images are.
constexpr char kMapnikStyle[] =
    R"(<Map srs="+proj=merc +a=6378137 +b=6378137 +units=m +no_defs" background-color="white"><Style name="fence"><Rule>)"
    R"(<LineSymbolizer stroke="black" stroke-width="1.5" stroke-dasharray="80,20"/>)"
    R"(<MarkersSymbolizer placement="line" spacing="100" width="10" height="10" allow-overlap="true" )"
    R"(ignore-placement="true"/></Rule></Style><Layer name="lines" srs="+proj=merc +a=6378137 +b=6378137 +units=m +no_defs"><StyleName>fence</StyleName>)"
    R"(<Datasource><Parameter name="type">geojson</Parameter><Parameter name="file">lines.geojson</Parameter>)"
    R"(</Datasource></Layer></Map>)";
constexpr char kMapnikScript[] =
    "import mapnik\n"
    "m = mapnik.Map(4000, 4000)\n"
    "mapnik.load_map(m, 'style.xml')\n"
    "m.zoom_all()\n"
    "mapnik.render_to_file(m, 'out.png', 'png')\n";

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
        std::ofstream(m_folder / "picture.py") << kMapnikScript;
        std::ofstream(m_folder / "style.xml") << kMapnikStyle;
        for (const auto& [name, rule] : {std::pair{"plain", "* -> symbol 250\n"},
                                         {"pattern", "* -> symbol 241\n"},
                                         {"fence", "* -> symbol 208\n"}})
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

void BM_LinesToPngAsAFence(benchmark::State& state) {
    Run(state, ZENRO_PROGRAM " draw lines.geojson --rules ./fence.rules --scale 5000 --no-frame --dpi 254 -o out.png",
        kLines);
}
BENCHMARK(BM_LinesToPngAsAFence)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LinesToPngByMapnik(benchmark::State& state) {
    Run(state, "/usr/bin/python3 picture.py", kLines);
}
BENCHMARK(BM_LinesToPngByMapnik)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_DemoSheetToDwg(benchmark::State& state) {
    Run(state, ZENRO_PROGRAM " draw " ZENRO_DEMO_DATA "/*.geojson --rules demo --scale 1000 -o out.dwg", 1);
}
BENCHMARK(BM_DemoSheetToDwg)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
