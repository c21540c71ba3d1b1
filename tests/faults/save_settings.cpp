// save_settings FILE: sets a key of a settings file through the library, as a program of the family does. Status 1, and
// a line, where the library says that it was not saved.
#include <cstdio>
#include <filesystem>

#include "zenromath/gbk.h"
#include "zenromath/runtime.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string path = zm::gbk::FromUtf8(std::filesystem::absolute(argv[1]).string());
    // A path that begins with two separators is taken as it is, one with a single one is not.
    if (WriteZenroProfileString("a", "k", "new", ("/" + path).c_str(), 0) != 0) return 0;
    std::puts("not saved");
    return 1;
}
