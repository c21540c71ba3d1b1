// Draws one sheet to SVG and PNG with nothing but the installed library.   usage: sheet DIRECTORY
#include <zenromath.h>
#include <zenromath/log.h>
#include <zenromath/null_device.h>
#include <zenromath/qt.h>
#include <zenromath/svg.h>

#include <QImage>
#include <cstdio>
#include <fstream>
#include <string>

#include "sheet_scene.h"

namespace {

bool WriteSvg(const std::string& path) {
    zm::SvgDevice svg(kPixels, kPixels, kSheetMm, kSheetMm);
    Draw(&svg);
    std::ofstream file(path, std::ios::binary);
    file << svg.Document();
    return file.good();
}

bool WritePng(const std::string& path) {
    zm::qt::EnsureApplication();
    QImage image(kPixels, kPixels, QImage::Format_RGB32);
    image.fill(Qt::white);
    zm::qt::QtDevice device(&image);
    Draw(&device);
    return device.Finish() && image.save(QString::fromStdString(path));
}

}  // namespace

int main(int argc, char** argv) {
    const std::string directory = argc > 1 ? argv[1] : ".";
    const TqNoteLayBase notes;
    if (TsymbolInit(nullptr) == 0) {
        std::fputs("sheet: the symbol library beside the installed library cannot be read\n", stderr);
        return 1;
    }
    if (!WriteSvg(directory + "/sheet.svg") || !WritePng(directory + "/sheet.png")) {
        std::fprintf(stderr, "sheet: %s: a picture cannot be written\n", directory.c_str());
        return 1;
    }
    zm::LogDevice log;
    Draw(&log);
    zm::NullDevice nothing;
    Draw(&nothing);
    TsymbolClose();
    std::printf("%s\n", log.lines().size() > 100 ? "drawn" : "too little is drawn");
    return 0;
}
