#include "tests/dwg/reader/recorded.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace zm::test {
namespace {

using Json = nlohmann::json;

std::vector<std::uint8_t> FromHex(const std::string& hex) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

const Json& Files() {
    static const Json files = [] {
        std::ifstream in(ZM_VECTORS "/dwg-files.json");
        if (!in) throw std::runtime_error("tests/vectors/dwg-files.json cannot be read");
        return Json::parse(in);
    }();
    return files;
}

}  // namespace

std::vector<std::uint8_t> RecordedTemplate(const std::string& name) {
    for (const char* group : {"templates", "block_files"})
        if (Files().at(group).contains(name)) return FromHex(Files().at(group).at(name).get<std::string>());
    throw std::runtime_error("no recorded file " + name);
}

const std::vector<RecordedDrawing>& RecordedDrawings() {
    static const std::vector<RecordedDrawing> drawings = [] {
        std::vector<RecordedDrawing> made;
        std::ifstream in(ZM_VECTORS "/dwg.jsonl");
        for (std::string line; std::getline(in, line);) {
            const Json record = Json::parse(line);
            for (const Json& file : record.at("expect").at("files")) {
                auto bytes = FromHex(file.at("header").get<std::string>());
                const auto variables = RecordedTemplate(record.at("template").get<std::string>());
                bytes.insert(bytes.end(), variables.begin() + 96, variables.begin() + 1310);
                const auto rest = FromHex(file.at("from1310").get<std::string>());
                bytes.insert(bytes.end(), rest.begin(), rest.end());
                made.push_back({record.at("name").get<std::string>(), std::move(bytes)});
            }
        }
        if (made.empty()) throw std::runtime_error("tests/vectors/dwg.jsonl holds no drawing");
        return made;
    }();
    return drawings;
}

}  // namespace zm::test
