// Tables behind a feature's look: lookups by code against an array access, and loading of large files against reading
// their bytes.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "config/state.h"
#include "runtime/text/numbers.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/config.h"

namespace {

using zm::numbers::Text;

// A project of so many layers over the codes 0 to 999, 999 pen widths, 99 note classes.
struct Project {
    explicit Project(int layers) {
        dirs.NameProject("map");
        std::string text = Text("[LayerSet]\r\nLayers=%d\r\n", layers);
        for (int i = 0; i < layers; ++i)
            text +=
                Text("Layer%d=L%d %d %d %d 1\r\n", i + 1, i, i * 1000 / layers, (i + 1) * 1000 / layers - 1, 1 + i % 9);
        zm::test::WriteFile(dirs.Project("map.ini"), text);
        text = "[PenWidth]\r\nDefault=20\r\n";
        for (int i = 1; i <= 999; ++i) text += Text("%d=%d\r\n", i, i % 250);
        zm::test::WriteFile(dirs.Module("neworv.ini"), text);
        text = "[NOTE CLASS]\r\nTOTAL=99\r\n";
        for (int i = 1; i <= 99; ++i) text += Text("C%02d=%c,L%d,1,3,%d,5,1,%d,1,m\r\n", i, 33 + i % 90, i, i, i);
        text += "[FONT NAME]\r\n";
        for (int i = 1; i <= 99; ++i)
            text += Text("%d=Font%d,STANDARD,hztxt,0,\r\n%dC=400 0 0 134 1 2 3 49\r\n", i, i, i);
        zm::test::WriteFile(dirs.Module("Orvnote.cod"), text);
    }
    ~Project() { zm::config::ResetState(); }
    zm::test::FamilyDirs dirs;
    zm::test::TestHost host;
};

void BM_LookUp(benchmark::State& run) {
    const Project project(static_cast<int>(run.range(0)));
    ReadCengCi();
    if (run.range(1) != 0) {
        LayerCol* table = nullptr;
        int* count = nullptr;
        Get_CengCi(table, count);
    }
    int code = 0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(GetColorNo1(code));
        code = (code + 7919) % 1000;
    }
    run.SetItemsProcessed(run.iterations());
}
// Layers; 1: the table is in a caller's hands, so that it is searched.
BENCHMARK(BM_LookUp)->Args({20, 0})->Args({1000, 0})->Args({20, 1})->Args({1000, 1});

// The limit of a lookup: one array access.
void BM_ArrayAccess(benchmark::State& run) {
    int colors[1000];
    for (int i = 0; i < 1000; ++i) colors[i] = i % 9;
    benchmark::DoNotOptimize(colors);
    int code = 0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(colors[code]);
        code = (code + 7919) % 1000;
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_ArrayAccess);

void BM_LoadProject(benchmark::State& run) {
    const Project project(1000);
    for (auto _ : run) {
        ReadCengCi();
        const TqNoteLayBase notes;
        benchmark::DoNotOptimize(&notes);
    }
}
BENCHMARK(BM_LoadProject)->Unit(benchmark::kMillisecond);

// The limit of loading: the bytes of the three files.
void BM_ReadTheThreeFiles(benchmark::State& run) {
    const Project project(1000);
    for (auto _ : run)
        for (const auto& file :
             {project.dirs.Project("map.ini"), project.dirs.Module("neworv.ini"), project.dirs.Module("Orvnote.cod")})
            benchmark::DoNotOptimize(zm::test::ReadFile(file).size());
}
BENCHMARK(BM_ReadTheThreeFiles)->Unit(benchmark::kMillisecond);

}  // namespace
