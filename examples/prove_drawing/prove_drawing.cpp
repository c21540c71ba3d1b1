// Reads a drawing back with nothing but the installed library.   usage: prove_drawing FILE
#include <zenromath/dwg_reader.h>

#include <cstdio>

int main(int argc, char** argv) {
    const auto drawing = zm::DrawingFile::Open(argc > 1 ? argv[1] : "");
    if (!drawing) {
        std::fprintf(stderr, "prove_drawing: %s: cannot be read\n", argc > 1 ? argv[1] : "no file is named");
        return 1;
    }
    int entities = 0;
    drawing->ForEachEntity([&](const zm::DrawingEntity&) { return ++entities > 0; });
    std::printf("version %d, %zu layers, %d entities, %s\n", drawing->version(), drawing->Layers().size(), entities,
                drawing->Prove().sound() ? "sound" : "damaged");
    return 0;
}
