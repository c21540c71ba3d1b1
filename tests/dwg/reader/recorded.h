// The drawings of tests/vectors/dwg.jsonl, whole, as the reference writer left them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zm::test {

struct RecordedDrawing {
    std::string id;
    std::vector<std::uint8_t> bytes;
};

/// Every finished drawing of the recorded sessions, put together from the template and the expected bytes.
const std::vector<RecordedDrawing>& RecordedDrawings();

/// A template of dwg-files.json by its name.
std::vector<std::uint8_t> RecordedTemplate(const std::string& name);

}  // namespace zm::test
