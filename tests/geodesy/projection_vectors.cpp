// Handlers of the recorded calls of geodesy: projection, earth-centred coordinates, distance and area.
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "geodesy/state.h"
#include "tests/vector_runner/registry.h"
#include "zenromath/geodesy.h"

using zm::vectors::Call;
using zm::vectors::FromReal;
using zm::vectors::Json;
using zm::vectors::Real;

namespace {

znCoordSysTypeConstants System(const Json& code) {
    return static_cast<znCoordSysTypeConstants>(code.get<int>());
}

// Runs one call of a recorded sequence on an object; op is [member, arguments...].
template <class Object>
using Members = std::map<std::string, std::function<void(Object&, const Json& op, Json& rets)>>;

template <class Object>
Members<Object> PlaneMembers() {
    return {
        {"getB", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getB())); }},
        {"setB", [](Object& c, const Json& op, Json&) { c.setB(Real(op.at(1))); }},
        {"getL", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getL())); }},
        {"setL", [](Object& c, const Json& op, Json&) { c.setL(Real(op.at(1))); }},
        {"setBL", [](Object& c, const Json& op, Json&) { c.setBL(Real(op.at(1)), Real(op.at(2))); }},
        {"getGX", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getGX())); }},
        {"setGX", [](Object& c, const Json& op, Json&) { c.setGX(Real(op.at(1))); }},
        {"getGY", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getGY())); }},
        {"setGY", [](Object& c, const Json& op, Json&) { c.setGY(Real(op.at(1))); }},
        {"getL0", [](Object& c, const Json&, Json& rets) { rets.push_back(c.getL0()); }},
        {"setL0", [](Object& c, const Json& op, Json&) { c.setL0(op.at(1).get<int>()); }},
        {"getGSwidth", [](Object& c, const Json&, Json& rets) { rets.push_back(c.getGSwidth()); }},
        {"setGSwidth", [](Object& c, const Json& op, Json&) { c.setGSwidth(op.at(1).get<int>()); }},
        {"getEllipseFlag",
         [](Object& c, const Json&, Json& rets) { rets.push_back(static_cast<int>(c.getEllipseFlag())); }},
        {"geta", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.geta())); }},
        {"gete2", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.gete2())); }},
        {"setEllipse", [](Object& c, const Json& op, Json&) { c.setEllipse(System(op.at(1))); }},
        {"getStandardGY", [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getStandardGY())); }},
        {"setStandardGY", [](Object& c, const Json& op, Json&) { c.setStandardGY(Real(op.at(1))); }},
        {"UTMtoGS", [](Object& c, const Json&, Json& rets) { rets.push_back(c.UTMtoGS()); }},
        {"GStoUTM", [](Object& c, const Json&, Json& rets) { rets.push_back(c.GStoUTM()); }},
    };
}

Members<Coordinate_3Dsys> SpaceMembers() {
    using Object = Coordinate_3Dsys;
    auto members = PlaneMembers<Object>();
    members["getX"] = [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getX())); };
    members["getY"] = [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getY())); };
    members["getZ"] = [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getZ())); };
    members["getH"] = [](Object& c, const Json&, Json& rets) { rets.push_back(FromReal(c.getH())); };
    members["setX"] = [](Object& c, const Json& op, Json&) { c.setX(Real(op.at(1))); };
    members["setY"] = [](Object& c, const Json& op, Json&) { c.setY(Real(op.at(1))); };
    members["setZ"] = [](Object& c, const Json& op, Json&) { c.setZ(Real(op.at(1))); };
    members["setH"] = [](Object& c, const Json& op, Json&) { c.setH(Real(op.at(1))); };
    members["setXYZ"] = [](Object& c, const Json& op, Json&) {
        c.setXYZ(Real(op.at(1)), Real(op.at(2)), Real(op.at(3)));
    };
    members["setBLH"] = [](Object& c, const Json& op, Json&) {
        c.setBLH(Real(op.at(1)), Real(op.at(2)), Real(op.at(3)));
    };
    members["BLHtoXYZ"] = [](Object& c, const Json&, Json& rets) { rets.push_back(c.BLHtoXYZ()); };
    members["XYZtoBLH"] = [](Object& c, const Json&, Json& rets) { rets.push_back(c.XYZtoBLH()); };
    return members;
}

template <class Object>
void RunSequence(const Members<Object>& members, Object& object, const Json& ops, Json& out) {
    Json rets = Json::array();
    for (const Json& op : ops) {
        const auto found = members.find(op.at(0).get<std::string>());
        if (found == members.end()) throw std::runtime_error("no handler for the member " + op.at(0).dump());
        found->second(object, op, rets);
    }
    out["rets"] = rets;
    out["GX"] = FromReal(object.GX);
    out["GY"] = FromReal(object.GY);
    out["B"] = FromReal(object.B);
    out["L"] = FromReal(object.L);
    out["GSwidth"] = object.GSwidth;
    out["L0"] = object.L0;
    out["EllipseFlag"] = static_cast<int>(object.EllipseFlag);
    out["a"] = FromReal(object.a);
    out["e2"] = FromReal(object.e2);
}

const Call kCoordinate2D("Coordinate_2Dsys", [](const Json& in, Json& out) {
    static const auto members = PlaneMembers<Coordinate_2Dsys>();
    const Json& ctor = in.at("ctor");
    Coordinate_2Dsys object;
    if (ctor.at(0) == "XY") object = Coordinate_2Dsys(Real(ctor.at(1)), Real(ctor.at(2)));
    if (ctor.at(0) == "BL") object = Coordinate_2Dsys(Real(ctor.at(1)), Real(ctor.at(2)), System(ctor.at(3)));
    RunSequence(members, object, in.at("ops"), out);
});

const Call kCoordinate3D("Coordinate_3Dsys", [](const Json& in, Json& out) {
    static const auto members = SpaceMembers();
    const Json& ctor = in.at("ctor");
    Coordinate_3Dsys object;
    if (ctor.at(0) == "XYZ") object = Coordinate_3Dsys(Real(ctor.at(1)), Real(ctor.at(2)), Real(ctor.at(3)));
    if (ctor.at(0) == "BLH")
        object = Coordinate_3Dsys(Real(ctor.at(1)), Real(ctor.at(2)), Real(ctor.at(3)), System(ctor.at(4)));
    RunSequence(members, object, in.at("ops"), out);
    out["X"] = FromReal(object.X);
    out["Y"] = FromReal(object.Y);
    out["Z"] = FromReal(object.Z);
    out["H"] = FromReal(object.H);
});

const Call kForward("forward", [](const Json& in, Json& out) {
    double x = 0.0, y = 0.0, gamma = 0.0;
    forward(in.at("ell").get<int>(), Real(in.at("B")), Real(in.at("l")), &x, &y, &gamma);
    out["x"] = FromReal(x);
    out["y"] = FromReal(y);
    out["gamma"] = FromReal(gamma);
});
const Call kBackward("backward", [](const Json& in, Json& out) {
    double B = 0.0, l = 0.0, gamma = 0.0;
    backward(in.at("ell").get<int>(), Real(in.at("x")), Real(in.at("y")), &B, &l, &gamma);
    out["B"] = FromReal(B);
    out["l"] = FromReal(l);
    out["gamma"] = FromReal(gamma);
});
const Call kToPlane("JWD_to_Gaosi", [](const Json& in, Json& out) {
    double x = 0.0, y = 0.0;
    JWD_to_Gaosi(in.at("ell").get<int>(), Real(in.at("B")), Real(in.at("L")), Real(in.at("L0")), x, y);
    out["x"] = FromReal(x);
    out["y"] = FromReal(y);
});
const Call kFromPlane("Gaosi_to_JWD", [](const Json& in, Json& out) {
    double B = 0.0, L = 0.0;
    Gaosi_to_JWD(in.at("ell").get<int>(), Real(in.at("x")), Real(in.at("y")), Real(in.at("L0")), B, L);
    out["B"] = FromReal(B);
    out["L"] = FromReal(L);
});
const Call kZoneChange("GaosiExcange", [](const Json& in, Json& out) {
    double x = Real(in.at("x"));
    double y = Real(in.at("y"));
    GaosiExcange(in.at("ell").get<int>(), x, y, Real(in.at("L0src")), Real(in.at("L0dst")));
    out["x"] = FromReal(x);
    out["y"] = FromReal(y);
});

// The precision settings of a record, the defaults again at the end.
class ScopedSettings {
 public:
    explicit ScopedSettings(const Json& in) {
        zm::geodesy::ResetState();
        const Json settings = in.value("settings", Json::object());
        if (settings.contains("precision")) SetEllipsePrecision(Real(settings.at("precision")));
        if (settings.contains("blsec")) SetEllipseBLsecPrec(Real(settings.at("blsec")));
        if (settings.contains("xym")) SetEllipseXYmeterPrec(Real(settings.at("xym")));
    }
    ~ScopedSettings() { zm::geodesy::ResetState(); }
    ScopedSettings(const ScopedSettings&) = delete;
    ScopedSettings& operator=(const ScopedSettings&) = delete;
};

std::vector<Point3D> Points(const Json& list) {
    std::vector<Point3D> points;
    for (const Json& item : list) points.push_back({Real(item.at(0)), Real(item.at(1)), 0.0});
    return points;
}

const Call kInquiry("DistandAreaInquiry", [](const Json& in, Json& out) {
    const ScopedSettings settings(in);
    const auto points = Points(in.at("pts"));
    DistandAreaInquiry inquiry(points.data(), static_cast<int>(points.size()), in.at("method").get<short>());
    if (!in.at("ellipse").is_null()) inquiry.SetEllipse(System(in.at("ellipse")));
    const auto call = in.at("call").get<std::string>();
    if (call == "GetDist") out["ret"] = FromReal(inquiry.GetDist());
    if (call == "GetCloseDist") out["ret"] = FromReal(inquiry.GetCloseDist());
    if (call == "GetArea") {
        out["ret"] = FromReal(inquiry.GetArea());
        out["area"] = {FromReal(inquiry.area->value), inquiry.area->unit, FromReal(inquiry.area->metres)};
    }
});

const Call kSurveyArea("TestmyCalEllipseArea", [](const Json& in, Json& out) {
    const ScopedSettings settings(in);
    const auto points = Points(in.at("pts"));
    out["ret"] =
        FromReal(TestmyCalEllipseArea(points.data(), static_cast<int>(points.size()), in.at("isBL").get<bool>(),
                                      Real(in.at("a")), Real(in.at("second")), in.at("secondIsB").get<bool>()));
});

const Call kSettings("EllipseSettings", [](const Json& in, Json& out) {
    const ScopedSettings settings(in);
    Json rets = Json::array();
    for (const Json& op : in.at("ops")) {
        const auto name = op.at(0).get<std::string>();
        if (name == "GetEllipsePrecision") rets.push_back(FromReal(GetEllipsePrecision()));
        if (name == "SetEllipsePrecision") SetEllipsePrecision(Real(op.at(1)));
        if (name == "SetEllipseBLsecPrec") rets.push_back(FromReal(SetEllipseBLsecPrec(Real(op.at(1)))));
        if (name == "SetEllipseXYmeterPrec") rets.push_back(FromReal(SetEllipseXYmeterPrec(Real(op.at(1)))));
    }
    out["rets"] = rets;
});

}  // namespace
