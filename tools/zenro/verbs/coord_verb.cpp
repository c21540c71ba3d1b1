// zenro coord: positions to the plane and back, and the zones of a longitude.
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>

#include <nlohmann/json.hpp>

#include "runtime/text/numbers.h"
#include "tools/kit/angles.h"
#include "tools/kit/report.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/plane_system.h"
#include "tools/zenro/coord/series_error.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kMetresPerRadian = 6371000.0;  // for differences shown in millimetres only
constexpr double kSeriesTolerance = 0.001;      // metres; a larger error of the series is reported

struct CoordOptions {
    std::string file;
    PlaneSystem plane;
    AngleForm angles = AngleForm::decimal;
    std::string order;
    std::string columns;
    std::string encoding;
    std::string historic;  // "", "free" or "class"
    int decimals = -1;
};

znCoordSysTypeConstants SystemOf(const CoordOptions& options) {
    const bool three = options.plane.zoneWidth == 3;
    switch (options.plane.family.selector()) {
        case 54:
            return three ? znCoord54G3 : znCoord54G6;
        case 80:
            return three ? znCoord80G3 : znCoord80G6;
        default:
            return three ? znCoord84G3 : znCoord84G6;
    }
}

struct PlanePoint {
    double north = 0.0, east = 0.0;  // east without false easting
};

// By the class, which knows whole meridians only; false for another one.
bool ClassForward(const CoordOptions& options, const PointLine& p, double meridian, PlanePoint& out) {
    if (meridian != std::floor(meridian)) return false;
    Coordinate_2Dsys c;
    c.setEllipse(SystemOf(options));
    c.setBL(p.first * kDegree, p.second * kDegree);
    c.setL0(static_cast<int>(meridian));
    if (c.UTMtoGS() == 0) return false;
    out = {c.getGX(), c.getGY()};
    return true;
}

bool ClassBackward(const CoordOptions& options, const PlanePoint& p, double meridian, double& lat, double& lon) {
    if (meridian != std::floor(meridian)) return false;
    Coordinate_2Dsys c;
    c.setEllipse(SystemOf(options));
    c.setGX(p.north);
    c.setGY(p.east);
    c.setL0(static_cast<int>(meridian));
    if (c.GStoUTM() == 0) return false;
    lat = c.getB() / kDegree;
    lon = c.getL() / kDegree;
    return true;
}

[[noreturn]] void NeedsWholeMeridian() {
    throw Failure(kUsage, Phrase("--historic class needs a central meridian of whole degrees."));
}

std::string Angle(double degrees, const CoordOptions& options) {
    return AngleAs(degrees, options.angles, options.decimals);
}

std::string Metres(double metres, const CoordOptions& options) {
    return Fixed(metres, options.decimals >= 0 ? options.decimals : 4);
}

// Numbers leave as JSON with the digits of the text form.
double Rounded(const std::string& text) {
    double number = 0.0;
    ReadReal(text, number);
    return number;
}

void Print(const std::string& line) {
    WriteLine(line);
}

// Why a place so far from its meridian has no result; empty where it has one. The size of an error is reported.
std::string TooFar(int selector, double latitude, double offset, const std::string& where, Context& context) {
    if (!(std::fabs(offset) <= kSeriesEndDegrees))
        return Phrase(
            "{0} degrees from the central meridian; the projection ends at {1}. Take another zone, or give --meridian",
            Fixed(offset, 2), Fixed(kSeriesEndDegrees, 0));
    if (std::fabs(offset) <= kSeriesSureDegrees) return {};
    const double error = SeriesError(selector, latitude, offset);
    if (error > kSeriesTolerance)
        context.report.Warn(N_("positions far from their meridian"),
                            Phrase("{0}: {1} degrees from the central meridian, where the series is off by {2} m.",
                                   where, Fixed(offset, 2), Fixed(error, 3)));
    return {};
}

std::string WhereOf(const PointLine& p) {
    return Phrase("line {0}", p.number);
}

PointFormat FormatOf(const CoordOptions& options, PointKind kind) {
    PointFormat format{
        kind, options.order != "lon,lat" && options.order != "east,north", options.angles, {}, options.encoding};
    if (options.columns.empty()) return format;
    format.columns = ColumnsOf(options.columns);
    if (KindOf(format.columns) != kind)
        throw Failure(kUsage, Phrase(kind == PointKind::plane ? N_("--columns {0}: here the points are n and e.")
                                                              : N_("--columns {0}: here the points are lat and lon."),
                                     options.columns));
    return format;
}

// A line that is no point keeps its place, so that rows match those of the input.
void PrintBad(const PointLine& p, const std::string& wrong, const Context& context) {
    if (context.json)
        Print(nlohmann::ordered_json{{"line", p.number}, {"error", wrong}}.dump(
            -1, ' ', false, nlohmann::json::error_handler_t::replace));
    else
        Print("error line " + std::to_string(p.number) + ": " + ForTerminal(Printable(wrong)));
}

// What a line had besides its position.
void AddNames(nlohmann::ordered_json& j, const PointLine& p) {
    if (!p.name.empty()) j["no"] = p.name;
    if (!p.code.empty()) j["code"] = p.code;
    if (!std::isnan(p.height)) j["height_m"] = p.height;
    if (!p.rest.empty()) j["rest"] = p.rest;
}

std::string WithNames(const std::string& result, const PointLine& p) {
    std::string line;
    for (const std::string* part : {&p.name, &p.code})
        if (!part->empty()) line += *part + " ";
    line += result;
    if (!std::isnan(p.height)) line += " " + numbers::Text("%.15g", p.height);
    return p.rest.empty() ? line : line + " " + p.rest;
}

void ToPlane(const CoordOptions& options, Context& context) {
    const PointFormat format = FormatOf(options, PointKind::geographic);
    const auto bad = [&](const PointLine& p, const std::string& wrong) { PrintBad(p, wrong, context); };
    if (!context.json) Print("# north_m east_m zone central_meridian_deg (" + FamilyTitle(options.plane.family) + ")");
    long points = 0;
    const auto work = [&](const PointLine& p) {
        const double meridian = std::isnan(options.plane.meridian) ? CentralMeridian(p.second, options.plane.zoneWidth)
                                                                   : options.plane.meridian;
        const int zone =
            std::isnan(options.plane.meridian) ? ZoneNumber(static_cast<int>(meridian), options.plane.zoneWidth) : 0;
        const std::string tooFar =
            TooFar(options.plane.family.selector(), p.first, p.second - meridian, WhereOf(p), context);
        if (!tooFar.empty()) {
            context.report.Skip(N_("positions out of range"), Phrase("{0}: {1}.", WhereOf(p), tooFar));
            return bad(p, tooFar);
        }
        ++points;
        PlanePoint freely, byClass;
        JWD_to_Gaosi(options.plane.family.selector(), p.first * kDegree, p.second * kDegree, meridian * kDegree,
                     freely.north, freely.east);
        const bool hasClass = ClassForward(options, p, meridian, byClass);
        if (options.historic == "class" && !hasClass) NeedsWholeMeridian();
        const PlanePoint& out = options.historic == "class" ? byClass : freely;
        const std::string north = Metres(out.north, options);
        const std::string east = Metres(OutsideEasting(options.plane, out.east, zone), options);
        const double dn = (byClass.north - freely.north) * 1000.0, de = (byClass.east - freely.east) * 1000.0;
        if (context.json) {
            nlohmann::ordered_json j = {{"north_m", Rounded(north)},
                                        {"east_m", Rounded(east)},
                                        {"zone", zone},
                                        {"central_meridian_deg", meridian}};
            if (context.verbose && hasClass) j["class_minus_free_mm"] = {{"north", dn}, {"east", de}};
            AddNames(j, p);
            Print(j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
            return;
        }
        std::string line = north + " " + east + " " + std::to_string(zone) + " " + Fixed(meridian, 0);
        if (meridian != std::floor(meridian)) line = north + " " + east + " 0 " + Fixed(meridian, 6);
        if (context.verbose && hasClass) line += " class-free_mm north " + Fixed(dn, 4) + " east " + Fixed(de, 4);
        Print(WithNames(line, p));
    };
    ReadPoints(options.file, format, context, work, bad);
    if (points == 0) throw Failure(kFailed, Phrase("no point was converted."));
    context.status = context.report.status();
}

void ToGeo(const CoordOptions& options, Context& context) {
    const PointFormat format = FormatOf(options, PointKind::plane);
    const auto bad = [&](const PointLine& p, const std::string& wrong) { PrintBad(p, wrong, context); };
    if (!context.json)
        Print(std::string("# lat_") +
              (options.angles == AngleForm::packed ? "packed lon_packed"
               : options.angles == AngleForm::dms  ? "dms lon_dms"
                                                   : "deg lon_deg") +
              " central_meridian_deg (" + FamilyTitle(options.plane.family) + ")");
    long done = 0;
    const auto work = [&](const PointLine& p) {
        double natural = 0.0, meridian = 0.0;
        const std::string wrong = SplitEasting(options.plane, p.second, natural, meridian);
        if (wrong.empty() && IsOfOtherWidth(options.plane, p.second))
            context.report.Warn(
                N_("zones of the other width"),
                Phrase("{0}: its zone of {1} degrees has the meridian {2}; for a zone of China give --zone {3}.",
                       WhereOf(p), options.plane.zoneWidth, Fixed(meridian, 0), options.plane.zoneWidth == 3 ? 6 : 3));
        if (!wrong.empty()) {
            context.report.Skip(N_("eastings that are no places"), Phrase("{0}: {1}.", WhereOf(p), wrong));
            return bad(p, wrong);
        }
        const PlanePoint plane{p.first, natural};
        const int ell = options.plane.family.selector();
        double B = 0.0, l = 0.0, historicB = 0.0, historicL = 0.0, classLat = 0.0, classLon = 0.0;
        InverseOfForward(ell, plane.north, plane.east, B, l);
        Gaosi_to_JWD(ell, plane.north, plane.east, meridian * kDegree, historicB, historicL);
        const bool hasClass = ClassBackward(options, plane, meridian, classLat, classLon);
        double lat = B / kDegree, lon = l / kDegree + meridian;
        const double cosine = std::cos(B);
        const auto mm = [&](double dLat, double dLon) {
            return nlohmann::ordered_json{{"lat", dLat * kDegree * kMetresPerRadian * 1000.0},
                                          {"lon", dLon * kDegree * cosine * kMetresPerRadian * 1000.0}};
        };
        const auto freeDiff = mm(historicB / kDegree - lat, historicL / kDegree - lon);
        const auto classDiff = mm(classLat - lat, classLon - lon);
        if (options.historic == "free") {
            lat = historicB / kDegree;
            lon = historicL / kDegree;
        } else if (options.historic == "class") {
            if (!hasClass) NeedsWholeMeridian();
            lat = classLat;
            lon = classLon;
        }
        const std::string tooFar = TooFar(ell, B / kDegree, l / kDegree, WhereOf(p), context);
        if (!tooFar.empty()) {
            context.report.Skip(N_("positions out of range"), Phrase("{0}: {1}.", WhereOf(p), tooFar));
            return bad(p, tooFar);
        }
        ++done;
        const std::string latText = Angle(lat, options), lonText = Angle(lon, options);
        if (context.json) {
            const bool packed = options.angles == AngleForm::packed;
            nlohmann::ordered_json j;
            if (options.angles == AngleForm::dms)
                j = {{"lat_dms", latText}, {"lon_dms", lonText}};
            else
                j = {{packed ? "lat_packed" : "lat_deg", Rounded(latText)},
                     {packed ? "lon_packed" : "lon_deg", Rounded(lonText)}};
            j["central_meridian_deg"] = meridian;
            if (context.verbose) {
                j["free_minus_true_mm"] = freeDiff;
                if (hasClass) j["class_minus_true_mm"] = classDiff;
            }
            AddNames(j, p);
            Print(j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
            return;
        }
        std::string line = latText + " " + lonText + " " + Fixed(meridian, meridian == std::floor(meridian) ? 0 : 6);
        if (context.verbose) {
            const auto reported = [](const char* name, const nlohmann::ordered_json& d) {
                return std::string(" ") + name + "-true_mm lat " + Fixed(d["lat"].get<double>(), 4) + " lon " +
                       Fixed(d["lon"].get<double>(), 4);
            };
            line += reported("free", freeDiff);
            if (hasClass) line += reported("class", classDiff);
        }
        Print(WithNames(line, p));
    };
    ReadPoints(options.file, format, context, work, bad);
    if (done == 0) throw Failure(kFailed, Phrase("no point was converted."));
    context.status = context.report.status();
}

void Zones(const CoordOptions& options, Context& context) {
    const PointFormat format = FormatOf(options, PointKind::geographic);
    const auto bad = [&](const PointLine& p, const std::string& wrong) { PrintBad(p, wrong, context); };
    if (!context.json) Print("# lon_deg zone3 central_meridian3_deg zone6 central_meridian6_deg");
    const auto work = [&](const PointLine& p) {
        if (p.second < 0.0)
            context.report.Warn(
                N_("western longitudes"),
                Phrase("line {0}: the zone rule truncates towards zero and serves eastern longitudes only.", p.number));
        const int m3 = CentralMeridian(p.second, 3), m6 = CentralMeridian(p.second, 6);
        if (context.json) {
            Print(nlohmann::ordered_json{
                {"lon_deg", p.second},
                {"zone3", ZoneNumber(m3, 3)},
                {"central_meridian3_deg", m3},
                {"zone6", ZoneNumber(m6, 6)},
                {"central_meridian6_deg",
                 m6}}.dump());
            return;
        }
        Print(Fixed(p.second, options.decimals >= 0 ? options.decimals : 6) + " " + std::to_string(ZoneNumber(m3, 3)) +
              " " + std::to_string(m3) + " " + std::to_string(ZoneNumber(m6, 6)) + " " + std::to_string(m6));
    };
    const long points = ReadLongitudes(options.file, format, context, work, bad);
    if (points == 0) throw Failure(kFailed, Phrase("no longitude was read."));
    context.status = context.report.status();
}

void AddCoordOptions(Verb verb, Context& context, CoordOptions& options, const char* orders) {
    verb.AddOption("FILE", options.file, "Points, one a line; - or nothing is stdin");
    AddCommonOptions(verb, context);
    AddAngleOption(verb, options.angles);
    verb.AddOption("--columns", options.columns,
                   "What the columns hold: no, code, n, e, h, lat, lon, or - for one that is passed over")
        .Default("two numbers first");
    verb.AddOption("--encoding", options.encoding, "Encoding of numbers and codes").Default("UTF-8");
    verb.AddOption("--decimals", options.decimals, "Decimals of the results").Within(0, 15);
    std::vector<std::string> choices;
    const std::string both(orders);
    choices.push_back(both.substr(0, both.find('|')));
    choices.push_back(both.substr(both.find('|') + 1));
    verb.AddOption("--order", options.order,
                   "Order of the two numbers on a line, unless they are named (lat=.. lon=..)")
        .OneOf(choices)
        .Default(choices[0]);
}

void AddPlaneOptions(Verb verb, CoordOptions& options) {
    AddPlaneSystemOptions(verb, options.plane, "");
    verb.AddOption("--historic", options.historic,
                   "Results of the family's historic functions: free (forward, backward) or class (Coordinate_2Dsys)")
        .OneOf({"free", "class"});
}

}  // namespace

void AddCoordVerb(Verb app, Context& context) {
    const Verb coord = app.AddVerb("coord", "Convert coordinates, one point a line");
    coord.NeedsVerb();
    const auto options = std::make_shared<CoordOptions>();

    const Verb toPlane = coord.AddVerb("to-plane", "Latitude and longitude to northing and easting");
    AddCoordOptions(toPlane, context, *options, "lat,lon|lon,lat");
    AddPlaneOptions(toPlane, *options);
    toPlane.OnRun([options, &context] { ToPlane(*options, context); });

    const Verb toGeo = coord.AddVerb("to-geo", "Northing and easting to latitude and longitude, the true inverse");
    AddCoordOptions(toGeo, context, *options, "north,east|east,north");
    AddPlaneOptions(toGeo, *options);
    toGeo.OnRun([options, &context] { ToGeo(*options, context); });

    const Verb zone = coord.AddVerb("zone", "Zone numbers and central meridians of a longitude");
    AddCoordOptions(zone, context, *options, "lat,lon|lon,lat");
    zone.OnRun([options, &context] { Zones(*options, context); });
    AddTransformVerb(coord, context);
}

}  // namespace zm::tool
