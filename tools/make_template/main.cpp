// make_template: writes the template drawing of the DWG writer.
#include <cstdio>
#include <string>

#include "tools/make_template/template_drawing.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_template FILE\nWrites the template drawing, by custom named acad.dwg.\n");
        return 2;
    }
    const std::string drawing = zm::tool::TemplateDrawing();
    std::FILE* file = std::fopen(argv[1], "wb");
    bool written = file != nullptr && std::fwrite(drawing.data(), 1, drawing.size(), file) == drawing.size();
    if (file != nullptr && std::fclose(file) != 0) written = false;
    if (!written) {
        std::fprintf(stderr, "make_template: %s could not be written. Check that its folder exists and has room.\n",
                     argv[1]);
        return 1;
    }
    return 0;
}
