#include "tools/zenro/plane.h"

#include <ogr_spatialref.h>

#include <cmath>
#include <limits>

#include "tools/zenro/text.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kFalseEasting = 500000.0;
constexpr double kZone = 1000000.0;
constexpr double kAxisTolerance = 0.5;         // metres: tells the families' semi-major axes apart
constexpr double kFlatteningTolerance = 1e-4;  // of the inverse flattening; GRS 80 and WGS 84 are one family
constexpr double kLargeScale = 10000.0;        // down to it maps are made in 3-degree zones, below in 6-degree zones

using SystemPointer = std::unique_ptr<OGRSpatialReference>;

SystemPointer CopyOf(const OGRSpatialReference& system) {
    SystemPointer copy(system.Clone());
    copy->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return copy;
}

// The family whose ellipsoid a system has, 0 if none.
int FamilyOf(const OGRSpatialReference& system) {
    struct Known {
        int selector;
        double a, inverse;
    };
    static constexpr Known kFamilies[] = {
        {54, 6378245.0, 298.3}, {80, 6378140.0, 298.257}, {84, 6378137.0, 298.257222}};
    const double a = system.GetSemiMajor(), inverse = system.GetInvFlattening();
    for (const Known& k : kFamilies)
        if (std::fabs(a - k.a) < kAxisTolerance && std::fabs(inverse - k.inverse) < kFlatteningTolerance * 10.0)
            return k.selector;
    return 0;
}

std::string NameOf(const OGRSpatialReference& system) {
    const char* name = system.GetName();
    return name != nullptr && *name != '\0' ? name : "an unnamed system";
}

// The library's own projection, as a system: Gauss-Krueger with scale 1 and no false northing.
bool IsGaussKrueger(const OGRSpatialReference& system, double& meridian, double& falseEasting) {
    const char* projection = system.GetAttrValue("PROJECTION");
    if (projection == nullptr || std::string(projection) != SRS_PT_TRANSVERSE_MERCATOR) return false;
    if (std::fabs(system.GetNormProjParm(SRS_PP_SCALE_FACTOR, 1.0) - 1.0) > 1e-12) return false;
    if (system.GetNormProjParm(SRS_PP_LATITUDE_OF_ORIGIN, 0.0) != 0.0) return false;
    if (system.GetNormProjParm(SRS_PP_FALSE_NORTHING, 0.0) != 0.0) return false;
    if (system.GetLinearUnits() != 1.0) return false;
    meridian = system.GetNormProjParm(SRS_PP_CENTRAL_MERIDIAN, 0.0);
    falseEasting = system.GetNormProjParm(SRS_PP_FALSE_EASTING, 0.0);
    return true;
}

int TargetGeographicCode(int selector) {
    return selector == 54 ? 4214 : selector == 80 ? 4610 : 4490;
}

// PROJ's operation between two systems; null where it knows none. A change of datum that changes nothing is none.
std::unique_ptr<OGRCoordinateTransformation> WayBetween(const OGRSpatialReference& from, const OGRSpatialReference& to,
                                                        bool sameDatum) {
    OGRCoordinateTransformationOptions options;
    options.SetBallparkAllowed(sameDatum);
    return std::unique_ptr<OGRCoordinateTransformation>(OGRCreateCoordinateTransformation(&from, &to, options));
}

const char* FamilyName(int selector) {
    return selector == 54 ? "54" : selector == 80 ? "80" : "2000";
}

}  // namespace

struct PlaneMap::Body {
    enum class Way { asItIs, offset, project } way = Way::asItIs;
    double addEast = 0.0;                                       // offset
    std::unique_ptr<OGRCoordinateTransformation> toGeographic;  // null: the coordinates are degrees already
    TargetPlane target;
};

PlaneMap::PlaneMap() : m_body(std::make_unique<Body>()) {}
PlaneMap::PlaneMap(PlaneMap&&) noexcept = default;
PlaneMap::~PlaneMap() = default;

void PlaneMap::Apply(std::size_t n, double* x, double* y) const {
    const Body& body = *m_body;
    if (body.way == Body::Way::asItIs) return;
    if (body.way == Body::Way::offset) {
        for (std::size_t i = 0; i < n; ++i) x[i] += body.addEast;
        return;
    }
    if (body.toGeographic != nullptr) {
        std::vector<int> good(n, 0);
        body.toGeographic->Transform(static_cast<int>(n), x, y, nullptr, good.data());
        for (std::size_t i = 0; i < n; ++i)
            if (good[i] == 0) x[i] = y[i] = std::numeric_limits<double>::quiet_NaN();
    }
    std::vector<double> latitude(n), longitude(n);
    for (std::size_t i = 0; i < n; ++i) {
        latitude[i] = y[i] * kDegree;
        longitude[i] = (x[i] - body.target.meridian) * kDegree;
        // Far from the meridian the series run off; such a place is no place of this sheet.
        if (!(std::fabs(x[i] - body.target.meridian) < 30.0) || !(std::fabs(y[i]) <= 90.0))
            latitude[i] = std::numeric_limits<double>::quiet_NaN();
    }
    ForwardArray(body.target.selector, n, latitude.data(), longitude.data(), y, x);
    for (std::size_t i = 0; i < n; ++i) x[i] += body.target.eastOffset;
}

std::string TargetPlane::Describe() const {
    if (!geodetic) return "plane coordinates as in the data";
    std::string text = std::string(FamilyName(selector)) + " family, ";
    if (zone != 0) text += std::to_string(zoneWidth) + "-degree zone " + std::to_string(zone) + ", ";
    return text + "central meridian " + Fixed(meridian, meridian == std::floor(meridian) ? 0 : 4);
}

std::string TargetPlane::DescribeChinese() const {
    if (!geodetic) return "独立坐标系";
    const std::string name = selector == 54   ? "1954年北京坐标系"
                             : selector == 80 ? "1980西安坐标系"
                                              : "2000国家大地坐标系";
    return name + "，中央子午线" + Fixed(meridian, meridian == std::floor(meridian) ? 0 : 4) + "°";
}

PlaneChooser::PlaneChooser(const PlaneOptions& options, double scale, Report& report)
    : m_options(options), m_scale(scale), m_report(report) {}

PlaneChooser::~PlaneChooser() = default;

std::unique_ptr<OGRSpatialReference> PlaneChooser::SourceOf(const OGRSpatialReference* system) const {
    if (!m_options.source.empty()) {
        SystemPointer source = std::make_unique<OGRSpatialReference>();
        if (source->SetFromUserInput(m_options.source.c_str()) != OGRERR_NONE)
            throw Failure(kUsage,
                          "--source " + m_options.source + ": no system of this name; give one such as EPSG:4490.");
        source->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        return source;
    }
    return system != nullptr ? CopyOf(*system) : nullptr;
}

void PlaneChooser::Settle(const OGRSpatialReference* system, const double box[4], const std::string& layer) {
    if (m_target.geodetic) return;
    const SystemPointer source = SourceOf(system);
    if (source == nullptr || (!source->IsGeographic() && !source->IsProjected())) return;
    double meridian = 0.0, falseEasting = 0.0;
    const bool gauss = IsGaussKrueger(*source, meridian, falseEasting);
    const int own = FamilyOf(*source);
    m_target.selector = m_options.system.empty()   ? (own != 0 ? own : 84)
                        : m_options.system == "54" ? 54
                        : m_options.system == "80" ? 80
                                                   : 84;
    m_target.zoneWidth = m_options.zoneWidth != 0 ? m_options.zoneWidth : m_scale <= kLargeScale ? 3 : 6;
    m_target.geodetic = true;
    // Data that is in such a plane already stays in it, unless another one is asked for.
    if (gauss && own == m_target.selector && !m_options.meridian && m_options.zoneWidth == 0) {
        m_target.meridian = meridian;
        m_target.eastOffset = falseEasting;
        m_target.zone = static_cast<int>(falseEasting / kZone);
        return;
    }
    double longitude = (box[0] + box[2]) / 2.0, latitude = (box[1] + box[3]) / 2.0;
    if (source->IsProjected()) {
        const SystemPointer geographic(source->CloneGeogCS());
        geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        const std::unique_ptr<OGRCoordinateTransformation> way(
            OGRCreateCoordinateTransformation(source.get(), geographic.get()));
        if (way == nullptr || way->Transform(1, &longitude, &latitude) == FALSE)
            throw Failure(kFailed, layer +
                                       ": the centre of the data cannot be brought to longitude and latitude from " +
                                       NameOf(*source) + ".");
    }
    if (m_options.meridian) {
        m_target.meridian = *m_options.meridian;
        m_target.zone = 0;
    } else {
        Coordinate_2Dsys zone;
        zone.setEllipse(m_target.zoneWidth == 3 ? znCoord84G3 : znCoord84G6);
        zone.setL(longitude * kDegree);
        m_target.meridian = zone.getL0();
        m_target.zone = m_target.zoneWidth == 3 ? zone.getL0() / 3 : (zone.getL0() + 3) / 6;
        if (longitude < 0.0) {
            // The library's zone rule truncates towards zero and serves eastern longitudes only.
            m_target.meridian =
                m_target.zoneWidth == 3 ? 3.0 * std::round(longitude / 3.0) : 6.0 * std::floor(longitude / 6.0) + 3.0;
            m_target.zone = 0;
        }
    }
    if (m_options.easting == "natural")
        m_target.eastOffset = 0.0;
    else
        m_target.eastOffset = kFalseEasting + (m_options.easting == "standard" ? m_target.zone * kZone : 0.0);
    if (m_options.easting != "standard") m_target.zone = 0;
}

PlaneMap PlaneChooser::MapOf(const OGRSpatialReference* system, const std::string& layer) {
    PlaneMap map;
    map.m_body->target = m_target;
    const SystemPointer source = SourceOf(system);
    if (source == nullptr || (!source->IsGeographic() && !source->IsProjected())) {
        m_report.Note(layer + ": the data names no coordinate system; its numbers are taken as metres in the plane. " +
                      "Give --source if they are not.");
        return map;
    }
    double meridian = 0.0, falseEasting = 0.0;
    const int own = FamilyOf(*source);
    const bool sameDatum = own == m_target.selector || m_options.datum == "keep";
    if (IsGaussKrueger(*source, meridian, falseEasting) && sameDatum && own == m_target.selector &&
        meridian == m_target.meridian) {
        map.m_body->way = PlaneMap::Body::Way::offset;
        map.m_body->addEast = m_target.eastOffset - falseEasting;
        return map;
    }
    map.m_body->way = PlaneMap::Body::Way::project;
    SystemPointer geographic(source->CloneGeogCS());
    const std::string target = std::string(FamilyName(m_target.selector)) + " family";
    if (!sameDatum) {
        geographic = std::make_unique<OGRSpatialReference>();
        geographic->importFromEPSG(TargetGeographicCode(m_target.selector));
        m_report.Note(layer + ": change of datum: " + NameOf(*source) + " to the " + target +
                      " by PROJ's best operation for the place; --datum keep takes the positions as they are.");
    } else if (own != m_target.selector) {
        m_report.Note(layer + ": no change of datum: positions on " + NameOf(*source) +
                      " are taken as they are on the " + target + "; they may be off by more than a hundred metres.");
    } else {
        const std::string name = NameOf(*geographic);
        if (name != "China Geodetic Coordinate System 2000" && own == 84)
            m_report.Note(layer + ": positions on " + name + " are taken as the " + target +
                          " without a change of datum; the two agree within a metre or so.");
    }
    geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (source->IsProjected() || !sameDatum) {
        map.m_body->toGeographic = WayBetween(*source, *geographic, sameDatum);
        // WGS 84 is of the 2000 family too; many a datum is tied to it alone.
        if (map.m_body->toGeographic == nullptr && m_target.selector == 84) {
            geographic->importFromEPSG(4326);
            geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
            map.m_body->toGeographic = WayBetween(*source, *geographic, sameDatum);
        }
        if (map.m_body->toGeographic == nullptr)
            throw Failure(kFailed,
                          layer + ": no way is known from " + NameOf(*source) + " to the " + target +
                              "; --datum keep takes the positions as they are, or give --source with +towgs84.");
    }
    return map;
}

}  // namespace zm::tool
