// Handlers of the recorded calls of sheet division and numbering.
#include <functional>
#include <string>
#include <vector>

#include "tests/vector_runner/registry.h"
#include "zenromath/sheets.h"

using zm::vectors::Call;
using zm::vectors::Json;
using zm::vectors::Real;
using namespace zm::sheets;

namespace {

Json Listed(const Neighbours& numbers) {
    Json list = Json::array();
    for (const std::string& number : numbers) list.push_back(number.empty() ? Json() : Json(number));
    return list;
}

Style StyleOf(const Json& in) {
    return in.value("style", "code") == "ninth" ? Style::ninth : Style::code;
}

// A size that does not read stays one that no scale has.
Division DivisionOf(const Json& in) {
    Division d;
    d.scale = in.at("scale").get<int>();
    if (!ReadSize(in.at("size").get<std::string>(), d)) d.height = 0;
    if (in.contains("origin")) {
        d.originX = Real(in.at("origin").at(0));
        d.originY = Real(in.at("origin").at(1));
    }
    return d;
}

PlaneBox BoxOf(const Json& box) {
    return {Real(box.at(0)), Real(box.at(1)), Real(box.at(2)), Real(box.at(3))};
}

void Sides(const auto& sheet, Json& out) {
    out["south"] = sheet.south;
    out["west"] = sheet.west;
    out["north"] = sheet.north;
    out["east"] = sheet.east;
}

// A handler that fills out, and the kind of a refusal in place of it.
Call Answer(const char* name, std::function<Refusal(const Json& in, Json& out)> work) {
    return Call(name, [work = std::move(work)](const Json& in, Json& out) {
        const Refusal refusal = work(in, out);
        if (refusal != Refusal::none) out = Json{{"error", NameOf(refusal)}};
    });
}

Refusal Number(Json& out, const std::function<Refusal(std::string&)>& call) {
    std::string number;
    const Refusal refusal = call(number);
    out["number"] = number;
    return refusal;
}

Refusal Numbers(Json& out, const std::function<Refusal(std::vector<std::string>&)>& call) {
    std::vector<std::string> numbers;
    const Refusal refusal = call(numbers);
    out["numbers"] = numbers;
    return refusal;
}

std::string TextOf(const Json& in) {
    return in.at("number").get<std::string>();
}

const Call kGeoNumber = Answer("geo_number", [](const Json& in, Json& out) {
    return Number(out, [&](std::string& n) {
        return GraticuleNumber(Real(in.at("lat")), Real(in.at("lon")), in.at("scale").get<int>(), StyleOf(in), n);
    });
});
const Call kGeoSheet = Answer("geo_sheet", [](const Json& in, Json& out) {
    GraticuleSheet sheet;
    const Refusal refusal = ReadGraticule(TextOf(in), sheet);
    out["scale"] = sheet.scale;
    out["row"] = sheet.row;
    out["col"] = sheet.column;
    Sides(sheet, out);
    return refusal;
});
const Call kGeoNeighbours = Answer("geo_neighbours", [](const Json& in, Json& out) {
    Neighbours numbers;
    const Refusal refusal = GraticuleNeighbours(TextOf(in), numbers);
    out["numbers"] = Listed(numbers);
    return refusal;
});
const Call kGeoCover = Answer("geo_cover", [](const Json& in, Json& out) {
    return Numbers(out, [&](std::vector<std::string>& n) {
        return GraticuleCover(Real(in.at("south")), Real(in.at("west")), Real(in.at("north")), Real(in.at("east")),
                              in.at("scale").get<int>(), StyleOf(in), n);
    });
});
const Call kGeoConvert = Answer("geo_convert", [](const Json& in, Json& out) {
    return Number(out, [&](std::string& n) { return ConvertGraticule(TextOf(in), StyleOf(in), n); });
});
const Call kRectNumber = Answer("rect_number", [](const Json& in, Json& out) {
    return Number(out,
                  [&](std::string& n) { return CornerNumber(DivisionOf(in), Real(in.at("x")), Real(in.at("y")), n); });
});
const Call kRectSheet = Answer("rect_sheet", [](const Json& in, Json& out) {
    PlaneBox sheet;
    const Refusal refusal = ReadCorner(DivisionOf(in), TextOf(in), sheet);
    Sides(sheet, out);
    return refusal;
});
const Call kRectNeighbours = Answer("rect_neighbours", [](const Json& in, Json& out) {
    Neighbours numbers;
    const Refusal refusal = CornerNeighbours(DivisionOf(in), TextOf(in), numbers);
    out["numbers"] = Listed(numbers);
    return refusal;
});
const Call kRectCover = Answer("rect_cover", [](const Json& in, Json& out) {
    return Numbers(out,
                   [&](std::vector<std::string>& n) { return CornerCover(DivisionOf(in), BoxOf(in.at("box")), n); });
});
const Call kRectRunning = Answer("rect_running", [](const Json& in, Json& out) {
    return Number(out, [&](std::string& n) {
        return RunningNumber(DivisionOf(in), BoxOf(in.at("box")), Real(in.at("x")), Real(in.at("y")),
                             in.at("prefix").get<std::string>(), n);
    });
});
const Call kRectRowColumn = Answer("rect_rowcol", [](const Json& in, Json& out) {
    return Number(out, [&](std::string& n) {
        return RowColumnNumber(DivisionOf(in), BoxOf(in.at("box")), Real(in.at("x")), Real(in.at("y")), n);
    });
});
const Call kRectQuadrant = Answer("rect_quadrant", [](const Json& in, Json& out) {
    return Number(out, [&](std::string& n) {
        return QuadrantNumber(Real(in.at("x")), Real(in.at("y")), in.at("scale").get<int>(), n);
    });
});
const Call kRectQuadrantSheet = Answer("rect_quadrant_sheet", [](const Json& in, Json& out) {
    int scale = 0;
    PlaneBox sheet;
    const Refusal refusal = ReadQuadrant(TextOf(in), scale, sheet);
    out["scale"] = scale;
    Sides(sheet, out);
    return refusal;
});

}  // namespace
