// Handlers of the recorded calls of triangles, heights and matrices.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "geometry/elevation.h"
#include "geometry/state.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/test_host.h"
#include "tests/vector_runner/registry.h"
#include "zenromath/geometry.h"

namespace {

using zm::test::GeometryCall;
using zm::vectors::FromReals;
using zm::vectors::Json;
using zm::vectors::Real;
using zm::vectors::Reals;

int Int(const Json& in, const char* name) {
    return in.at(name).get<int>();
}

const GeometryCall kTriangles("tqgettriln", [](const Json& in, Json& out) {
    std::vector<double> first = Reals(in.at("pairs1"));
    std::vector<double> second = Reals(in.at("pairs2"));
    int mark = 0;
    int* triangles = &mark;
    const int count = tqgettriln(triangles, first.data(), static_cast<int>(first.size() / 2), second.data(),
                                 static_cast<int>(second.size() / 2));
    const std::unique_ptr<int[]> owner(triangles);
    out["ret"] = count;
    out["triangles"] = triangles != nullptr ? Json(std::vector<int>(triangles, triangles + 3 * count)) : Json(nullptr);
});

struct HeightTables {
    std::map<std::string, std::unique_ptr<Find4H>> byName;
    std::vector<double> rets;

    void Run(const Json& op) {
        const auto what = op.at(0).get<std::string>();
        if (what == "elevation") SetDwgElevation(Real(op.at(1)));
        if (what == "get") rets.push_back(zm::dwg::CurrentElevation());
        if (what == "sync") {
            _LDBsyncelev(Real(op.at(1)), Real(op.at(2)));
            rets.push_back(zm::dwg::CurrentElevation());
        }
        if (what == "find") rets.push_back(Table(op).FindH(Real(op.at(2)), Real(op.at(3))));
        if (what == "delete") byName.erase(op.at(1).get<std::string>());
        if (what == "new" || what == "append") TakePoints(op, what == "new");
    }

 private:
    Find4H& Table(const Json& op) { return *byName.at(op.at(1).get<std::string>()); }

    void TakePoints(const Json& op, bool construct) {
        std::vector<double> x = Reals(op.at(2));
        std::vector<double> y = Reals(op.at(3));
        std::vector<double> h = Reals(op.at(4));
        const int n = static_cast<int>(x.size());
        if (!construct)
            rets.push_back(Table(op).AppendDate(n, x.data(), y.data(), h.data()));
        else
            byName[op.at(1).get<std::string>()] = std::make_unique<Find4H>(n, x.data(), y.data(), h.data());
    }
};

const GeometryCall kFind4H("Find4H", [](const Json& in, Json& out) {
    zm::geometry::ResetState();
    SetDwgElevation(0.0);
    HeightTables tables;
    for (const Json& op : in.at("ops")) tables.Run(op);
    out["rets"] = FromReals(tables.rets.data(), tables.rets.size());
});

const GeometryCall kConversema("conversema", [](const Json& in, Json& out) {
    std::vector<double> a = Reals(in.at("a"));
    zm::test::TestHost host;
    double* const inverse = conversema(a.data(), Int(in, "n"));
    out["ok"] = inverse == a.data() ? 1 : 0;
    out["messages"] = host.boxes.size();
    out["a"] = FromReals(a.data(), a.size());
});

const GeometryCall kMamulma("mamulma", [](const Json& in, Json& out) {
    std::vector<double> a = Reals(in.at("a"));
    std::vector<double> b = Reals(in.at("b"));
    const int m = Int(in, "m");
    const int n = Int(in, "n");
    std::vector<double> c(static_cast<std::size_t>(m) * static_cast<std::size_t>(n), 77.0);
    mamulma(a.data(), m, Int(in, "k"), b.data(), n, c.data());
    out["c"] = FromReals(c.data(), c.size());
});

const GeometryCall kTurnmatrix("turnmatrix", [](const Json& in, Json& out) {
    std::vector<double> a = Reals(in.at("a"));
    turnmatrix(a.data(), Int(in, "r"), Int(in, "c"));
    out["a"] = FromReals(a.data(), a.size());
});

}  // namespace
