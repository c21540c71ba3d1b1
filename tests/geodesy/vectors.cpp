// Handlers of the recorded calls of geodesy: angles and units.
#include "tests/vector_runner/registry.h"
#include "zenromath/geodesy.h"

using zm::vectors::Call;
using zm::vectors::FromReal;
using zm::vectors::Json;
using zm::vectors::Real;

namespace {

const Call kDegDms("deg_dms", [](const Json& in, Json& out) { out["ret"] = FromReal(deg_dms(Real(in.at("deg")))); });
const Call kDmsDeg("dms_deg", [](const Json& in, Json& out) { out["ret"] = FromReal(dms_deg(Real(in.at("dms")))); });
const Call kDmsSec("dms_sec", [](const Json& in, Json& out) { out["ret"] = FromReal(dms_sec(Real(in.at("dms")))); });
const Call kDmsRad("dms_rad", [](const Json& in, Json& out) { out["ret"] = FromReal(dms_rad(Real(in.at("dms")))); });
const Call kRadDms("rad_dms", [](const Json& in, Json& out) { out["ret"] = FromReal(rad_dms(Real(in.at("rad")))); });

const Call kAdjustAngle("_ADJUSTANGLE", [](const Json& in, Json& out) {
    double angle = Real(in.at("angle"));
    _ADJUSTANGLE(angle);
    out["angle"] = FromReal(angle);
});

const Call kLineBearing("_BEARING", [](const Json& in, Json& out) {
    out["ret"] = FromReal(_BEARING(Real(in.at("x1")), Real(in.at("y1")), Real(in.at("x2")), Real(in.at("y2"))));
});
const Call kPlainBearing("bearing", [](const Json& in, Json& out) {
    out["ret"] = FromReal(bearing(Real(in.at("x1")), Real(in.at("y1")), Real(in.at("x2")), Real(in.at("y2"))));
});

const Call kAngleValue("AngleValue", [](const Json& in, Json& out) {
    AngleValue angle(Real(in.at("value")), in.at("unit").get<int>());
    const auto then = in.at("then").get<std::string>();
    if (then == "degrees") angle.ToDegrees();
    if (then == "radians") angle.ToRadians();
    out["value"] = FromReal(angle.value);
    out["unit"] = angle.unit;
    out["radians"] = FromReal(angle.radians);
});

template <class Value>
void RunQuickConverter(const Json& in, Json& out) {
    Value value(0.0, in.at("unit").get<int>());
    value.SetValue(Real(in.at("value")));
    if (!in.at("target").is_null()) value.QuickConvert(in.at("target").get<int>());
    out["value"] = FromReal(value.value);
    out["unit"] = value.unit;
    out["metres"] = FromReal(value.metres);
}
const Call kLengthValue("LengthValue", RunQuickConverter<LengthValue>);
const Call kAreaValue("AreaValue", RunQuickConverter<AreaValue>);

const Call kScaleUnitConvert("ScaleUnitConvert", [](const Json& in, Json& out) {
    double result = 0.0;
    out["ret"] =
        ScaleUnitConvert(static_cast<znCoordUnitConstants>(in.at("from").get<int>()),
                         static_cast<znCoordUnitConstants>(in.at("to").get<int>()), Real(in.at("value")), result);
    out["result"] = FromReal(result);
});
const Call kScaleUnitCase("ScaleUnitCase", [](const Json& in, Json& out) {
    out["ret"] = FromReal(ScaleUnitCase(in.at("from").get<int>(), in.at("to").get<int>(), Real(in.at("value"))));
});
const Call kAreaUnitConvert("AreaUnitConvert", [](const Json& in, Json& out) {
    double result = 0.0;
    out["ret"] =
        AreaUnitConvert(static_cast<znAreaUnitConstants>(in.at("from").get<int>()),
                        static_cast<znAreaUnitConstants>(in.at("to").get<int>()), Real(in.at("value")), result);
    out["result"] = FromReal(result);
});

}  // namespace
