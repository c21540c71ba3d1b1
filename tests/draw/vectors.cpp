// Handlers of the recorded calls of the clip area.
#include "tests/vector_runner/registry.h"

#include <algorithm>
#include <memory>

#include "draw/access.h"
#include "runtime/state.h"
#include "tests/support/test_host.h"
#include "zenromath/draw.h"

namespace {

using namespace zm::vectors;

std::unique_ptr<CCutArea> AreaOf(const Json& in) {
    const Json& description = in.at("area");
    auto area = std::make_unique<CCutArea>(description.value("docut", 1));
    for (const Json& step : description.at("set")) {
        if (step.at(0) == "rect") {
            area->setcutarea(Real(step.at(1)), Real(step.at(2)), Real(step.at(3)), Real(step.at(4)));
        } else {
            auto x = Reals(step.at(1));
            auto y = Reals(step.at(2));
            area->setcutarea(static_cast<int>(x.size()), x.data(), y.data());
        }
    }
    return area;
}

const Call kSetCutArea("CCutArea.setcutarea", [](const Json& in, Json& out) {
    const auto area = AreaOf(in);
    int n = 0;
    PP* polygon = nullptr;
    out["kind"] = area->getcutarea(n, polygon);
    out["rotate"] = FromReal(area->getrotateangle());
    double box[4];
    area->getcutarea(box[0], box[1], box[2], box[3]);
    out["getcutarea"] = FromReals(box, 4);
    out["n"] = n;
    if (polygon != nullptr) out["polygon"] = FromReals(&polygon->x, 2 * static_cast<std::size_t>(n));
});

const Call kSetDoCut("CCutArea.set_docut", [](const Json& in, Json& out) {
    CCutArea area;
    out["rets"] = Json::array();
    for (const Json& value : in.at("values")) out["rets"].push_back(area.set_docut(value.get<int>()));
    out["get_docut"] = area.get_docut();
});

const Call kCutPoint("CCutArea.cutpoint", [](const Json& in, Json& out) {
    out["ret"] = AreaOf(in)->cutpoint(Real(in.at("x")), Real(in.at("y")));
});

const Call kInCode("CCutArea.incode", [](const Json& in, Json& out) {
    out["ret"] = zm::draw::Access::OutCode(*AreaOf(in), Real(in.at("x")), Real(in.at("y")));
});

const Call kCutLine("CCutArea.cutline", [](const Json& in, Json& out) {
    double ends[4] = {Real(in.at("x1")), Real(in.at("y1")), Real(in.at("x2")), Real(in.at("y2"))};
    out["ret"] = AreaOf(in)->cutline(ends[0], ends[1], ends[2], ends[3]);
    static constexpr const char* kNames[] = {"x1", "y1", "x2", "y2"};
    for (int i = 0; i < 4; ++i) out[kNames[i]] = FromReal(ends[i]);
});

const Call kCutArc("CCutArea.cutarc", [](const Json& in, Json& out) {
    auto angles = Reals(in.at("angles"));
    angles.resize(8);
    const int count = AreaOf(in)->cutarc(Real(in.at("cx")), Real(in.at("cy")), Real(in.at("r")), angles.data());
    out["ret"] = count;
    out["angles"] = FromReals(angles.data(), static_cast<std::size_t>(std::max(count, 2)));
});

const Call kCutPolygon("CCutArea.cutpolygon", [](const Json& in, Json& out) {
    auto x = Reals(in.at("x"));
    auto y = Reals(in.at("y"));
    const int n = in.at("n").get<int>();
    const std::size_t points = x.size();
    const auto room = static_cast<std::size_t>(std::max({2 * n, n + 1, static_cast<int>(points)}));
    x.resize(room);
    y.resize(room);
    const auto area = AreaOf(in);
    const int count = area->cutpolygon(x.data(), y.data(), n);
    out["ret"] = count;
    const std::size_t shown = area->get_docut() == 0 ? points : 2 * static_cast<std::size_t>(count);
    out["x"] = FromReals(x.data(), shown);
    out["y"] = FromReals(y.data(), shown);
});

const Call kRgnCutLine("CCutArea.rgncutline", [](const Json& in, Json& out) {
    zm::test::TestHost host;
    const auto area = AreaOf(in);
    if (!in.at("prior").is_null()) {
        auto ends = Reals(in.at("prior"));
        area->cutline(ends[0], ends[1], ends[2], ends[3]);
    }
    CObArray pieces;
    out["ret"] = area->rgncutline(Real(in.at("x1")), Real(in.at("y1")), Real(in.at("x2")), Real(in.at("y2")), &pieces);
    out["pieces"] = Json::array();
    for (int i = 0; i < pieces.GetSize(); ++i) {
        const std::unique_ptr<zm::RegionPiece> piece(reinterpret_cast<zm::RegionPiece*>(pieces.GetAt(i)));
        out["pieces"].push_back({FromReal(piece->first[0]), FromReal(piece->first[1]), FromReal(piece->second[0]),
                                 FromReal(piece->second[1]), static_cast<int>(piece->mark)});
    }
    out["reports"] = host.boxes.size();
});

}  // namespace
