#include "tests/dwg/reader/real_drawings.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace zm::test {

namespace fs = std::filesystem;

std::vector<nlohmann::json> RealDrawing::Of(const std::string& record) const {
    std::vector<nlohmann::json> found;
    std::copy_if(list.begin(), list.end(), std::back_inserter(found),
                 [&](const nlohmann::json& line) { return line.at("rec") == record; });
    return found;
}

fs::path RealDrawingsFolder() {
    const char* named = std::getenv("ZM_DRAWINGS");
    const fs::path folder = named != nullptr ? fs::path(named) : fs::path(ZM_DRAWINGS_BESIDE);
    std::error_code error;
    return fs::is_directory(folder / "expected", error) ? folder : fs::path();
}

const std::vector<RealDrawing>& RealDrawings() {
    static const std::vector<RealDrawing> drawings = [] {
        std::vector<RealDrawing> found;
        const fs::path folder = RealDrawingsFolder();
        if (folder.empty()) return found;
        for (const auto& entry : fs::directory_iterator(folder)) {
            std::string extension = entry.path().extension().string();
            std::transform(extension.begin(), extension.end(), extension.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
            if (extension != ".dwg") continue;
            RealDrawing drawing;
            drawing.path = entry.path();
            drawing.name = entry.path().stem().string();
            std::ifstream in(entry.path(), std::ios::binary);
            drawing.bytes.assign(std::istreambuf_iterator<char>(in), {});
            std::ifstream list(folder / "expected" / (drawing.name + ".jsonl"));
            for (std::string line; std::getline(list, line);) drawing.list.push_back(nlohmann::json::parse(line));
            found.push_back(std::move(drawing));
        }
        std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
        return found;
    }();
    return drawings;
}

}  // namespace zm::test
