// One feature, a walled garden with a tree and its name, to a picture and to a drawing, by the same function.
// usage: feature FOLDER      writes garden.svg and garden.dwg
#include <zenromath.h>
#include <zenromath/dwg_reader.h>
#include <zenromath/gbk.h>
#include <zenromath/svg.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

constexpr double kMetres = 100.0;  // both ways; at 1:500 that is 200 mm of paper
constexpr int kPixels = 2000;

void DrawGarden(CTqDraw& dc) {
    // Layer, colour and width hold as long as the pen lives.
    const CTQPen pen(0, 0.3, DWORD{0x000000});
    double x[4000] = {20, 80, 80, 20, 20}, y[4000] = {30, 30, 70, 70, 30};  // room for what curves need
    if (getsymbody(206) != 0) PROCESSALL(5, x, y, 1, 206);                  // a wall
    if (getsymbody(140) != 0) insert(50.0, 50.0, 0.0, 140);                 // a tree
    const CTQFont font(5.0, 2.5, 1, 0.0, 0);
    std::string name = zm::gbk::FromUtf8("清溪园");  // all text inside is GBK
    dc.textout(40.0, 25.0, name.data(), 0, 0);
}

// A picture: the context draws on a device.
bool WritePicture(const std::string& path) {
    zm::SvgDevice svg(kPixels, kPixels, 200.0, 200.0);
    CTqDraw dc(0);
    dc.SetViewDrawDC(&svg, kPixels / kMetres, 0.0, 0.0, kPixels, kPixels, 0);
    dc.SetCutArea();
    dc.SetDoCut(1);
    DrawGarden(dc);
    SelectWorkingTqDC(nullptr);
    std::ofstream file(path, std::ios::binary);
    file << svg.Document();
    return file.good();
}

// A drawing: the same context type 1 writes entities.
bool WriteDrawing(std::string path) {
    for (char& c : path)
        if (c == '/') c = '\\';  // paths inside are the family's
    CTqDraw dc(1);
    _LDBopendwg(path.data());
    DrawGarden(dc);
    _LDBclosedwg();
    SelectWorkingTqDC(nullptr);
    return zm::dwg::LastFileComplete();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";
    ReadCengCi();               // layers: colours and names of the codes
    const TqNoteLayBase notes;  // classes of lettering
    setgscale(500.0);           // symbols are as large as on paper at this scale
    if (TsymbolInit(nullptr) == 0) return 1;
    if (!WritePicture(folder + "/garden.svg") || !WriteDrawing(folder + "/garden.dwg")) {
        std::fprintf(stderr, "feature: %s: cannot be written\n", folder.c_str());
        return 1;
    }
    TsymbolClose();
    const auto drawing = zm::DrawingFile::Open((folder + "/garden.dwg").c_str());
    int entities = 0;
    drawing->ForEachEntity([&](const zm::DrawingEntity&) { return ++entities > 0; });
    std::printf("%d entities, %s\n", entities, drawing->Prove().sound() ? "sound" : "damaged");
    return 0;
}
