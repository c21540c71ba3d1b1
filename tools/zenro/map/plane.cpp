#include "tools/zenro/map/plane.h"

#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/series_error.h"
#include "tools/zenro/coord/zones.h"
#include "tools/zenro/map/axes_check.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kAxisTolerance = 0.5;         // metres: tells the families' semi-major axes apart
constexpr double kFlatteningTolerance = 1e-4;  // of the inverse flattening; GRS 80 and WGS 84 are one family
constexpr double kFarthestDrawn = 30.0;        // degrees from the meridian; beyond it the series runs off altogether
constexpr double kNoPlace = 1e9;               // metres; no plane coordinate is larger

using SystemPointer = std::unique_ptr<OGRSpatialReference>;

SystemPointer CopyOf(const OGRSpatialReference& system) {
    SystemPointer copy(system.Clone());
    copy->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return copy;
}

std::string NameOf(const OGRSpatialReference& system) {
    const char* name = system.GetName();
    return name != nullptr && *name != '\0' ? name : Translated("an unnamed system");
}

int TargetGeographicCode(int selector) {
    return selector == 54 ? 4214 : selector == 80 ? 4610 : 4490;
}

// Systems that follow the whole earth, as the 2000 family does; others of its ellipsoid are fixed to a continent.
bool IsOfTheWorld(const std::string& name) {
    for (const char* begin : {"WGS 84", "GCS_WGS_1984", "WGS84", "ETRS89", "ITRF", "IGS"})
        if (name.rfind(begin, 0) == 0) return true;
    return false;
}

// The geographic system that the family's name means.
std::string OwnName(int selector) {
    return selector == 54 ? "Beijing 1954" : selector == 80 ? "Xian 1980" : "China Geodetic Coordinate System 2000";
}

const char* FamilyName(int selector) {
    return selector == 54 ? "54" : selector == 80 ? "80" : "2000";
}

}  // namespace

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

struct PlaneMap::Body {
    enum class Way { asItIs, offset, project } way = Way::asItIs;
    double addEast = 0.0;                                       // offset
    std::unique_ptr<OGRCoordinateTransformation> toGeographic;  // null: the coordinates are degrees already
    std::unique_ptr<DatumWay> datum;                            // in its place where the datum changes
    SystemPointer source;                                       // where the source is no plain longitude and latitude
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
    if (body.datum != nullptr) body.datum->Apply(n, x, y);
    std::vector<double> latitude(n), longitude(n);
    for (std::size_t i = 0; i < n; ++i) {
        latitude[i] = y[i] * kDegree;
        longitude[i] = (x[i] - body.target.meridian) * kDegree;
        // Far from the meridian the series run off; such a place is no place of this sheet.
        if (!(std::fabs(x[i] - body.target.meridian) < kFarthestDrawn) || !(std::fabs(y[i]) <= 90.0))
            latitude[i] = std::numeric_limits<double>::quiet_NaN();
    }
    ForwardArray(body.target.selector, n, latitude.data(), longitude.data(), y, x);
    for (std::size_t i = 0; i < n; ++i) x[i] += body.target.eastOffset;
}

void PlaneMap::Invert(std::size_t n, double* x, double* y) const {
    const Body& body = *m_body;
    if (body.way == Body::Way::asItIs) return;
    if (body.way == Body::Way::offset) {
        for (std::size_t i = 0; i < n; ++i) x[i] -= body.addEast;
        return;
    }
    for (std::size_t i = 0; i < n; ++i) {
        double latitude = 0.0, longitude = 0.0;
        InverseOfForward(body.target.selector, y[i], x[i] - body.target.eastOffset, latitude, longitude);
        x[i] = body.target.meridian + longitude / kDegree;
        y[i] = latitude / kDegree;
    }
    if (body.source == nullptr) return;
    const SystemPointer geographic(body.source->CloneGeogCS());
    geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> back(
        OGRCreateCoordinateTransformation(geographic.get(), body.source.get()));
    std::vector<int> good(n, 0);
    if (back != nullptr) back->Transform(static_cast<int>(n), x, y, nullptr, good.data());
    for (std::size_t i = 0; i < n; ++i)
        if (good[i] == 0) x[i] = y[i] = std::numeric_limits<double>::quiet_NaN();
}

double PlaneMap::inverseError() const {
    constexpr double kMetres = 1000.0, kMetresOfADegree = 100000.0;
    if (m_body->datum == nullptr) return 0.0;
    return m_body->source != nullptr ? kMetres : kMetres / kMetresOfADegree;
}

std::string TargetPlane::Describe() const {
    if (!geodetic) return "plane coordinates as in the data";
    std::string text = std::string(FamilyName(selector)) + " family, ";
    if (zone != 0) text += std::to_string(zoneWidth) + "-degree zone " + std::to_string(zone) + ", ";
    return text + "central meridian " + Fixed(meridian, meridian == std::floor(meridian) ? 0 : 4);
}

std::string TargetPlane::DescribeForReader() const {
    return Rephrased(Describe(), {N_("plane coordinates as in the data"),
                                  N_("{0} family, {1}-degree zone {2}, central meridian {3}"),
                                  N_("{0} family, central meridian {1}")});
}

std::string TargetPlane::DescribeChinese() const {
    if (!geodetic) return "独立坐标系";
    const std::string name = selector == 54   ? "1954年北京坐标系"
                             : selector == 80 ? "1980西安坐标系"
                                              : "2000国家大地坐标系";
    return name + "，中央子午线" + Fixed(meridian, meridian == std::floor(meridian) ? 0 : 4) + "°";
}

struct PlaneChooser::First {
    SystemPointer source;
    double longitude = 0.0;  // of its middle
};

PlaneChooser::PlaneChooser(const PlaneOptions& options, Report& report) : m_options(options), m_report(report) {}

PlaneChooser::~PlaneChooser() = default;

std::unique_ptr<OGRSpatialReference> PlaneChooser::SourceOf(const OGRSpatialReference* system) const {
    if (!m_options.source.empty()) {
        SystemPointer source = std::make_unique<OGRSpatialReference>();
        if (source->SetFromUserInput(m_options.source.c_str()) != OGRERR_NONE)
            throw Failure(
                kUsage, Phrase("--source {0}: no system of this name; give one such as EPSG:4490.", m_options.source));
        source->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        return source;
    }
    return system != nullptr ? CopyOf(*system) : nullptr;
}

void PlaneChooser::Remember(const std::string& cause, const std::string& file) {
    for (auto& [known, files] : m_causes) {
        if (known != cause) continue;
        if (std::find(files.begin(), files.end(), file) == files.end()) files.push_back(file);
        return;
    }
    m_causes.push_back({cause, {file}});
}

// Far from its meridian the projection is off; what can be seen on paper is reported.
void PlaneChooser::TellSeriesError() {
    constexpr double kSeen = 1e-4;  // metres of paper
    if (!m_target.geodetic || m_area.empty()) return;
    double worst = 0.0, farthest = 0.0;
    for (const double longitude : {m_area.west, m_area.east}) {
        const double offset = longitude - m_target.meridian;
        if (std::fabs(offset) <= kSeriesSureDegrees || std::fabs(offset) >= kFarthestDrawn) continue;
        farthest = std::max(farthest, std::fabs(offset));
        constexpr int kSteps = 8;
        for (int i = 0; i <= kSteps; ++i) {
            const double latitude = m_area.south + (m_area.north - m_area.south) * i / kSteps;
            if (std::fabs(latitude) < 89.0) worst = std::max(worst, SeriesError(m_target.selector, latitude, offset));
        }
    }
    if (worst > kSeen * m_scale)
        m_report.Warn(
            N_("data far from the central meridian"),
            Phrase("the data reaches {0} degrees from the central meridian, where the projection is off by up to {1} m "
                   "({2} mm of paper).",
                   Fixed(farthest, 1), Fixed(worst, worst < 10.0 ? 2 : 0), Fixed(worst / m_scale * 1000.0, 1)));
}

void PlaneChooser::Tell() {
    TellSeriesError();
    for (const auto& [cause, files] : m_causes) {
        std::string names = files.front();
        if (files.size() == 2) names = Phrase("{0} and {1}", names, files[1]);
        if (files.size() > 2) names = Phrase("{0} and {1} more", names, files.size() - 1);
        m_report.Note(Phrase("{0}: {1}", names, cause));
    }
    m_causes.clear();
}

void PlaneChooser::CheckAxes(const OGRSpatialReference* source, double x, double y, double width, double height,
                             const std::string& file) const {
    if (!m_options.axes.empty()) return;
    bool certain = false;
    const std::string wrong = WrongAxes(source, x, y, width, height, certain);
    if (wrong.empty()) return;
    if (certain) throw Failure(kNoInput, file + ": " + wrong);
    m_report.Warn(N_("numbers that do not look like their system"), Phrase("{0}: {1}", file, wrong));
}

void PlaneChooser::CheckNumbers(const OGRSpatialReference* system, const OGREnvelope& extent,
                                const std::string& file) const {
    const SystemPointer source = SourceOf(system);
    const bool isKnown = source != nullptr && (source->IsGeographic() != FALSE || source->IsProjected() != FALSE);
    CheckAxes(isKnown ? source.get() : nullptr, (extent.MinX + extent.MaxX) / 2.0, (extent.MinY + extent.MaxY) / 2.0,
              extent.MaxX - extent.MinX, extent.MaxY - extent.MinY, file);
}

void PlaneChooser::Show(const OGRSpatialReference* system, RobustExtent& extent, const std::string& file) {
    SystemPointer source = SourceOf(system);
    if (source != nullptr && !source->IsGeographic() && !source->IsProjected()) source = nullptr;
    const bool degrees = source != nullptr && source->IsGeographic() != FALSE;
    double x = 0.0, y = 0.0;
    const bool any = extent.Middle(x, y);
    const double metres = source != nullptr ? kNoPlace : RobustExtent::kNoPlace;
    extent.Settle(degrees ? 360.0 : metres, degrees ? 90.0 : metres, degrees ? 1e-3 : 100.0);
    if (any) CheckAxes(source.get(), x, y, extent.x2() - extent.x1(), extent.y2() - extent.y1(), file);
    if (source == nullptr || extent.empty()) return;
    GeographicBox box;
    if (degrees) {
        box.Add(extent.x1(), extent.y1());
        box.Add(extent.x2(), extent.y2());
    } else {
        const SystemPointer geographic(source->CloneGeogCS());
        geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        const std::unique_ptr<OGRCoordinateTransformation> way(
            OGRCreateCoordinateTransformation(source.get(), geographic.get()));
        constexpr int kSteps = 4;  // a side is no straight line on the ellipsoid
        for (int i = 0; way != nullptr && i <= kSteps; ++i)
            for (int k = 0; k <= kSteps; ++k) {
                double longitude = extent.x1() + (extent.x2() - extent.x1()) * i / kSteps;
                double latitude = extent.y1() + (extent.y2() - extent.y1()) * k / kSteps;
                if (way->Transform(1, &longitude, &latitude) != FALSE) box.Add(longitude, latitude);
            }
        if (box.empty())
            throw Failure(kNoInput, Phrase("{0}: its numbers cannot be brought to longitude and latitude from {1}; "
                                           "give --source with the right system.",
                                           file, NameOf(*source)));
    }
    m_area.Add(box.west, box.south);
    m_area.Add(box.east, box.north);
    if (m_first != nullptr) return;
    m_first = std::make_unique<First>();
    m_first->source = std::move(source);
    m_first->longitude = (box.west + box.east) / 2.0;
}

void PlaneChooser::ChooseZone(double longitude) {
    Coordinate_2Dsys zone;
    zone.setEllipse(m_target.zoneWidth == 3 ? znCoord84G3 : znCoord84G6);
    zone.setL(longitude * kDegree);
    m_target.meridian = zone.getL0();
    m_target.zone = ZoneNumber(zone.getL0(), m_target.zoneWidth);
    if (longitude >= 0.0) return;
    // The library's zone rule truncates towards zero and serves eastern longitudes only.
    m_target.meridian = MeridianOfZone(ZoneOfLongitude(longitude, m_target.zoneWidth), m_target.zoneWidth);
    m_target.zone = 0;
}

int PlaneChooser::SelectorFor(const OGRSpatialReference& source) const {
    const int own = FamilyOf(source);
    return m_options.system.empty()   ? (own != 0 ? own : 84)
           : m_options.system == "54" ? 54
           : m_options.system == "80" ? 80
                                      : 84;
}

// Data that is in such a plane already stays in it, unless another one is asked for.
bool PlaneChooser::StaysInItsPlane(const OGRSpatialReference& source) const {
    double meridian = 0.0, falseEasting = 0.0;
    return IsGaussKrueger(source, meridian, falseEasting) && FamilyOf(source) == SelectorFor(source) &&
           !m_options.meridian && m_options.zoneWidth == 0 &&
           (m_options.zone == 0 || m_options.zone == ZoneOfEasting(falseEasting));
}

bool PlaneChooser::NeedsExtent(const OGRSpatialReference* system) const {
    const SystemPointer source = SourceOf(system);
    if (m_first != nullptr || source == nullptr || (!source->IsGeographic() && !source->IsProjected())) return false;
    return m_options.zone == 0 && !m_options.meridian && !StaysInItsPlane(*source);
}

void PlaneChooser::ShowUnread(const OGRSpatialReference* system) {
    SystemPointer source = SourceOf(system);
    if (m_first != nullptr || source == nullptr || (!source->IsGeographic() && !source->IsProjected())) return;
    m_first = std::make_unique<First>();
    m_first->source = std::move(source);
}

// The sheet's eastings name the zone: nothing of the data is asked.
void PlaneChooser::TakeNamedZone() {
    m_target.zone = m_options.zone;
    // Zones 13 to 23 are of 6 degrees and 24 to 45 of 3 degrees in China, whatever the scale.
    if (m_options.zoneWidth == 0 && m_target.zone >= 13 && m_target.zone <= 45)
        m_target.zoneWidth = m_target.zone <= 23 ? 6 : 3;
    const double own = MeridianOfZone(m_target.zone, m_target.zoneWidth);
    m_target.meridian = m_options.meridian.value_or(own > 180.0 ? own - 360.0 : own);
}

// Where no layer was looked at, a change of datum goes by the place of the sheet.
void PlaneChooser::TakeAreaOfSheet() {
    if (!m_area.empty()) return;
    m_area = m_options.area;
    if (m_options.sheet.size() != 4) return;
    for (const double x : {m_options.sheet[0], m_options.sheet[2]})
        for (const double y : {m_options.sheet[1], m_options.sheet[3]}) {
            double latitude = 0.0, longitude = 0.0;
            InverseOfForward(m_target.selector, y, x - m_target.eastOffset, latitude, longitude);
            m_area.Add(m_target.meridian + longitude / kDegree, latitude / kDegree);
        }
}

void PlaneChooser::Settle(double scale) {
    m_causes.clear();
    m_target = TargetPlane{};
    m_scale = scale;
    if (m_first == nullptr) return;
    const OGRSpatialReference& source = *m_first->source;
    m_target.selector = SelectorFor(source);
    m_target.zoneWidth = m_options.zoneWidth != 0 ? m_options.zoneWidth : scale <= kThreeDegreeScale ? 3 : 6;
    m_target.geodetic = true;
    if (StaysInItsPlane(source)) {
        IsGaussKrueger(source, m_target.meridian, m_target.eastOffset);
        m_target.zone = ZoneOfEasting(m_target.eastOffset);
        if (m_target.zone != 0) m_target.zoneWidth = MeridianOfZone(m_target.zone, 3) == m_target.meridian ? 3 : 6;
        TakeAreaOfSheet();
        return;
    }
    if (m_options.zone != 0) {
        TakeNamedZone();
    } else if (m_options.meridian) {
        m_target.meridian = *m_options.meridian;
        m_target.zone = 0;
    } else {
        ChooseZone(m_first->longitude);
    }
    if (m_options.easting == "natural")
        m_target.eastOffset = 0.0;
    else
        m_target.eastOffset = kFalseEasting + (m_options.easting == "standard" ? m_target.zone * kZone : 0.0);
    if (m_options.easting != "standard") m_target.zone = 0;
    TakeAreaOfSheet();
}

void PlaneChooser::ChangeDatum(const OGRSpatialReference& source, const std::string& file, PlaneMap& map) {
    std::unique_ptr<DatumWay>& way = map.m_body->datum;
    way = DatumWay::Find(source, TargetGeographicCode(m_target.selector), m_area);
    // WGS 84 is of the 2000 family too; many a datum is tied to it alone.
    if (way == nullptr && m_target.selector == 84) way = DatumWay::Find(source, 4326, m_area);
    const std::string target = Phrase("{0} family", FamilyName(m_target.selector));
    if (way == nullptr)
        throw Failure(kNoInput, Phrase("{0}: no operation that is known changes {1} to the {2} for the place of this "
                                       "data ({3},{4} to {5},{6}). Give --source with +towgs84 parameters made for the "
                                       "place, or --datum keep to take the positions as they are.",
                                       file, NameOf(source), target, Fixed(m_area.west, 2), Fixed(m_area.south, 2),
                                       Fixed(m_area.east, 2), Fixed(m_area.north, 2)));
    Remember(Phrase("change of datum: {0} to the {1} by {2}; --datum keep takes the positions as they are.",
                    NameOf(source), target, way->description()),
             file);
}

PlaneMap PlaneChooser::MapOf(const OGRSpatialReference* system, const std::string& file) {
    PlaneMap map;
    map.m_body->target = m_target;
    const SystemPointer source = SourceOf(system);
    if (source == nullptr || (!source->IsGeographic() && !source->IsProjected())) {
        Remember(
            Phrase(
                "the data names no coordinate system; its numbers are taken as metres in the plane. Give --source if "
                "they are not."),
            file);
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
    if (source->IsProjected() != FALSE) map.m_body->source = CopyOf(*source);
    if (!sameDatum) {
        ChangeDatum(*source, file, map);
        return map;
    }
    const SystemPointer geographic(source->CloneGeogCS());
    geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::string target = Phrase("{0} family", FamilyName(m_target.selector));
    if (own != m_target.selector) {
        Remember(Phrase("no change of datum: positions on {0} are taken as they are on the {1}; they may be off by "
                        "more than a hundred metres.",
                        NameOf(*source), target),
                 file);
    } else {
        const std::string name = NameOf(*geographic);
        if (name != OwnName(own))
            Remember(Phrase(own != 84 ? N_("positions on {0} are taken as the {1} without a change of datum; they may "
                                           "be off by tens of metres.")
                            : IsOfTheWorld(name)
                                ? N_("positions on {0} are taken as the {1} without a change of datum; the two agree "
                                     "within a metre or so.")
                                : N_("positions on {0} are taken as the {1} without a change of datum; they may be off "
                                     "by some metres."),
                            name, target),
                     file);
    }
    if (source->IsProjected() != FALSE) {
        map.m_body->toGeographic.reset(OGRCreateCoordinateTransformation(source.get(), geographic.get()));
        if (map.m_body->toGeographic == nullptr)
            throw Failure(kNoInput,
                          Phrase("{0}: no operation is known from {1} to its own longitude and latitude; give "
                                 "--source with a system that PROJ knows.",
                                 file, NameOf(*source)));
    }
    return map;
}

}  // namespace zm::tool
