// A map from arrays: each feature has a code, which names its layer and its symbol, and a note of a class.
// usage: map_from_arrays FOLDER      writes map.svg
#include <zenromath.h>
#include <zenromath/gbk.h>
#include <zenromath/svg.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

struct Feature {
    int code;                  // layer, colour, width and symbol
    int lineType;              // 1 polyline, 2 smooth curve
    std::vector<double> x, y;  // metres, x to the right, y up
    const char* note;          // UTF-8, null for none
    char noteClass;
};

const Feature kFeatures[] = {
    {535, 1, {110, 190, 190, 110, 110}, {20, 20, 80, 80, 20}, "桑园", 'F'},  // a fill
    {200, 1, {20, 60, 60, 20, 20}, {20, 20, 50, 50, 20}, "李家", 'J'},       // outlines
    {200, 1, {65, 95, 95, 65, 65}, {20, 20, 45, 45, 20}, "王家", 'J'},
    {250, 1, {5, 100, 195}, {60, 84, 92}, nullptr, '0'},  // a road
    {380, 2, {5, 60, 110, 195}, {120, 135, 128, 140}, "85", 'I'},
    {380, 2, {5, 50, 120, 195}, {95, 112, 108, 115}, "80", 'I'},
    {140, 1, {30, 45, 100}, {75, 78, 95}, nullptr, '0'},  // three trees
};

void DrawFigure(const Feature& f) {
    const CTQPen pen(f.code, 0, 0);  // colour and width of the code's layer
    if (getsymbody(f.code) == 0) return;
    const int n = static_cast<int>(f.x.size());
    if (TheHeadStatus() == SymbolStatusG) {
        for (int i = 0; i < n; ++i) insert(f.x[i], f.y[i], 0.0, f.code);
        return;
    }
    std::vector<double> x(f.x), y(f.y);  // PROCESSALL writes into its arrays, and curves need room
    x.resize(std::max<std::size_t>(x.size(), 4000));
    y.resize(x.size());
    PROCESSALL(n, x.data(), y.data(), f.lineType, f.code);
}

// In the font, size and colour of its class, its middle in the middle of a rectangle, or on the middle point of a line.
void DrawNote(CTqDraw& dc, TqNoteLayBase& notes, const Feature& f) {
    if (f.note == nullptr) return;
    std::string text = zm::gbk::FromUtf8(f.note);
    // A class's width is that of a Chinese character, and two letters are as wide.
    const double width = _To01mm(notes.CharW(f.noteClass)) / (zm::gbk::IsLead(text[0]) ? 1.0 : 2.0);
    CTQFont font(_To01mm(notes.CharH(f.noteClass)), width, notes.Fontn(f.noteClass), 0.0, 0);
    font._settextcolor(notes.Color(f.noteClass));
    const bool ring = f.x.front() == f.x.back() && f.y.front() == f.y.back();
    const std::size_t middle = f.x.size() / 2;
    double x = ring ? (f.x[0] + f.x[2]) / 2.0 : f.x[middle], y = ring ? (f.y[0] + f.y[2]) / 2.0 : f.y[middle];
    constexpr int kCentre = 4;
    dc.ResetStringPos(x, y, text.data(), kCentre);
    dc.textout(x, y, text.data(), 0, 0);
}

// Layers and colours are those of a project; this one lies beside the library. The process moves to its folder.
void NameProject() {
    std::string name = std::string(_LFModDir()) + "\\project.ini";
    char extension[] = ".ini";
    _LFInit(name.data(), extension, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    const std::filesystem::path path = std::filesystem::absolute(argc > 1 ? argv[1] : ".") / "map.svg";
    NameProject();
    constexpr double kScale = 1000.0, kMillimetres = 200.0;  // of paper, both ways: 200 m of ground
    constexpr int kPixels = 4000;
    zm::SvgDevice svg(kPixels, kPixels * 3 / 4, kMillimetres, kMillimetres * 3 / 4);
    CTqDraw dc(0);
    dc.SetViewDrawDC(&svg, kPixels / (kMillimetres * kScale / 1000.0), 0.0, 0.0, kPixels, kPixels * 3 / 4, 0);
    dc.SetCutArea();
    dc.SetDoCut(1);
    ReadCengCi();
    TqNoteLayBase notes;
    setgscale(kScale);
    TsymbolInit(nullptr);
    for (const Feature& f : kFeatures) DrawFigure(f);
    for (const Feature& f : kFeatures) DrawNote(dc, notes, f);
    TsymbolClose();
    dc.ResetHdc(nullptr);
    SelectWorkingTqDC(nullptr);
    std::ofstream file(path, std::ios::binary);
    file << svg.Document();
    if (!file.flush()) {
        std::fprintf(stderr, "map_from_arrays: %s: cannot be written\n", path.c_str());
        return 1;
    }
    std::printf("%zu features drawn\n", std::size(kFeatures));
    return 0;
}
