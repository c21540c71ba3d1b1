// The search: what a text may mean, tried one after the other.
#include <algorithm>
#include <cctype>

#include "runtime/text/gbk.h"
#include "tools/kit/text.h"
#include "tools/zenro/view/answers.h"
#include "tools/zenro/view/positions.h"

namespace zm::tool {
namespace {

constexpr std::size_t kMostFound = 200;

std::string Small(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

Json FoundAt(const char* kind, const std::string& title, const Box& box) {
    return {{"kind", kind}, {"title", title}, {"box", {box.x1, box.y1, box.x2, box.y2}}};
}

void FindSheet(const OpenedMap& map, const std::string& text, Json& found) {
    try {
        if (const auto sheet = ReadSheetNumber(text, map.scale, map.job.division))
            found.push_back(FoundAt("sheet", sheet->number, BoxOf(OutlineOf(*sheet, map.source.plane()))));
    } catch (const Failure&) {  // it has the form of a number, and is none
    }
}

void FindFeatures(OpenedMap& map, const std::string& text, Json& found) {
    const std::string wanted = Small(text);
    int code = 0;
    if (!ReadWhole(text, code)) code = 0;
    Feature feature;
    for (std::size_t i = 0; i < map.store.size() && found.size() < kMostFound; ++i) {
        const FeatureStore::Entry& entry = map.store.entry(i);
        if (map.hidden[i]) continue;
        map.store.Read(i, feature);
        std::string label;
        bool byCode = false;
        for (const Use& use : feature.uses) {
            const std::string name = gbk::ToUtf8(use.label);
            if (label.empty() && Small(name).find(wanted) != std::string::npos) label = name;
            byCode = byCode || (code > 0 && (use.rule->symbol == code || use.rule->outline == code));
        }
        if (!label.empty())
            found.push_back(FoundAt("name", label + " - " + feature.where, entry.box));
        else if (byCode)
            found.push_back(FoundAt("code", text + " - " + feature.where, entry.box));
        else if (code > 0 && entry.fid == code)
            found.push_back(FoundAt("feature", feature.where, entry.box));
    }
}

}  // namespace

Json Find(OpenedMap& map, const std::string& text) {
    Json found = Json::array();
    const std::string wanted = Trim(text);
    if (wanted.empty()) return {{"found", found}};
    FindSheet(map, wanted, found);
    if (found.empty()) found = FindPositions(wanted, map.source.plane(), map.data);
    FindFeatures(map, wanted, found);
    return {{"found", found}, {"more", found.size() >= kMostFound}};
}

}  // namespace zm::tool
