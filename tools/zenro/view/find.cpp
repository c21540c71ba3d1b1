// The search: what a text may mean, tried one after the other.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "runtime/text/gbk.h"
#include "tools/kit/text.h"
#include "tools/zenro/coord/points_io.h"
#include "tools/zenro/view/answers.h"

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

Box At(double x, double y) {
    return {x, y, x, y};
}

// A position in degrees or in the plane, in the order of coord; a plane position the other way round where only that
// lies in the data.
void FindPosition(const OpenedMap& map, const std::string& text, Json& found) {
    PointLine point;
    for (const AngleForm form : {AngleForm::decimal, AngleForm::dms}) {
        PointFormat degrees;
        degrees.angles = form;
        double x = 0.0, y = 0.0;
        if (!ReadPointText(text, degrees, point).empty() || !point.rest.empty()) continue;
        if (map.ToPlane(point.first, point.second, x, y)) found.push_back(FoundAt("position", text, At(x, y)));
        if (!found.empty()) return;
    }
    PointFormat plane;
    plane.kind = PointKind::plane;
    if (text.find_first_of("0123456789") == std::string::npos) return;
    const std::string wrong = ReadPointText(text, plane, point);
    if (!wrong.empty() && wrong.find("swapped") == std::string::npos) return;
    const Box straight = At(point.second, point.first), swapped = At(point.first, point.second);
    const bool turned = !wrong.empty() || (!straight.Meets(map.data) && swapped.Meets(map.data));
    found.push_back(FoundAt("position", text, turned ? swapped : straight));
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
    if (found.empty()) FindPosition(map, wanted, found);
    FindFeatures(map, wanted, found);
    return {{"found", found}, {"more", found.size() >= kMostFound}};
}

}  // namespace zm::tool
