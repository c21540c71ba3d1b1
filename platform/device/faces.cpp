#include "platform/device/faces.h"

namespace zm::platform {
namespace {

struct NamedFace {
    std::string_view name;
    Face face;
};

// From the tables hhea, OS/2 and hmtx of the fonts.
constexpr NamedFace kFaces[] = {
    {"WenQuanYi Zen Hei", {986.0 / 1024, 304.0 / 1024, 0.5, 614.0 / 1024, 702.0 / 1024}},
    {"DejaVu Sans", {1901.0 / 2048, 483.0 / 2048, 1038.0 / 2048, 1303.0 / 2048, 1493.0 / 2048}},
    {"SimSun", {0.859, 0.141, 0.5, 0.5, 0.68}},
    {"\xCB\xCE\xCC\xE5", {0.859, 0.141, 0.5, 0.5, 0.68}},  // 宋体
    {"SimHei", {0.859, 0.141, 0.5, 0.5, 0.68}},
    {"\xBA\xDA\xCC\xE5", {0.859, 0.141, 0.5, 0.5, 0.68}},  // 黑体
    {"Noto Sans CJK SC", {1.16, 0.288, 0.5, 0.555, 0.733}},
    {"Noto Serif CJK SC", {1.151, 0.286, 0.5, 0.532, 0.733}},
};

}  // namespace

const Face& FaceOf(std::string_view name) {
    for (const NamedFace& known : kFaces)
        if (known.name == name) return known.face;
    return kFaces[0].face;
}

}  // namespace zm::platform
