// The way of source coordinates to the plane: the source system read from the data, the library's own projection, and
// no change of datum that is not reported.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/kit/report.h"
#include "tools/zenro/map/datum_way.h"
#include "tools/zenro/map/robust_extent.h"

class OGREnvelope;
class OGRSpatialReference;
class OGRCoordinateTransformation;

namespace zm::tool {

/// What the user said about the plane; what is not said comes from the data.
struct PlaneOptions {
    std::string system;                // 54, 80, 84, 2000, or empty
    int zoneWidth = 0;                 // 3, 6, or 0
    std::optional<double> meridian;    // degrees
    std::string easting = "standard";  // standard, offset, natural
    std::string datum;                 // "shift": change by PROJ; "keep": take positions as they are; empty: as shift
    std::string source;                // source system in place of the data's own, anything PROJ knows
    int zone = 0;                      // the zone that the sheet's eastings name, 0 for none
    std::vector<double> sheet;         // x1, y1, x2, y2 in the plane, where that is all that is asked for
    GeographicBox area;                // the same in degrees, where that is known before the plane
    std::string axes;                  // "east,north", "north,east", or empty: as the system has it, and checked
};

/// The plane that the drawing is in.
struct TargetPlane {
    bool geodetic = false;    // false: plain plane coordinates of no known system
    int selector = 84;        // ellipsoid as forward takes it
    double meridian = 0.0;    // degrees
    double eastOffset = 0.0;  // added to the easting from the meridian
    int zone = 0;             // zone number in front of the easting, 0 for none
    int zoneWidth = 3;
    /// "2000 family, 3-degree zone 40, central meridian 120".
    std::string Describe() const;
    /// The same for messages, in the reader's language.
    std::string DescribeForReader() const;
    /// The same for a Chinese sheet margin, UTF-8.
    std::string DescribeChinese() const;
};

/// The family whose ellipsoid a system has: 54, 80, 84; 0 if none.
int FamilyOf(const OGRSpatialReference& system);
/// The library's own projection, as a system: Gauss-Krueger with scale 1 and no false northing, metres and degrees.
bool IsGaussKrueger(const OGRSpatialReference& system, double& meridian, double& falseEasting);

/// Takes the coordinates of one OGR layer to the plane.
class PlaneMap {
 public:
    PlaneMap(PlaneMap&&) noexcept;
    ~PlaneMap();
    /// Maps n points in place: x becomes the easting, y the northing. Points that cannot be mapped become not-a-number.
    void Apply(std::size_t n, double* x, double* y) const;
    /// About where points of the plane lie in the source's own system, within a kilometre where the datum changes. Those
    /// without a place become not-a-number.
    void Invert(std::size_t n, double* x, double* y) const;
    /// How far Invert may be off, in the source's units.
    double inverseError() const;

 private:
    friend class PlaneChooser;
    PlaneMap();
    struct Body;
    std::unique_ptr<Body> m_body;
};

/// The largest scale denominator whose maps are made in 3-degree zones; those of smaller scales are in 6-degree zones.
constexpr double kThreeDegreeScale = 10000.0;

/// Chooses the plane by the first layer that has a system, and makes the map of each layer.
class PlaneChooser {
 public:
    PlaneChooser(const PlaneOptions& options, Report& report);
    ~PlaneChooser();
    /// One layer of the data, with its vertices; the extent is settled here. Throws Failure (kNoInput) where the numbers
    /// cannot be places of the system that the layer names.
    /// \param file  for reports
    void Show(const OGRSpatialReference* system, RobustExtent& extent, const std::string& file);
    /// One layer whose extent is not asked for.
    void ShowUnread(const OGRSpatialReference* system);
    /// Throws Failure (kNoInput), or warns, where the numbers of a layer do not look like places of its system.
    void CheckNumbers(const OGRSpatialReference* system, const OGREnvelope& extent, const std::string& file) const;
    /// True where the plane follows from the extent of this layer: no sheet names the zone, and the layer is in no such
    /// plane already.
    bool NeedsExtent(const OGRSpatialReference* system) const;
    /// Settles the plane for a scale, after all layers were shown. May be called again for another scale.
    void Settle(double scale);
    /// The way of a layer. Throws Failure (kNoInput) where no operation changes its datum rightly.
    PlaneMap MapOf(const OGRSpatialReference* system, const std::string& file);
    /// Reports how the layers came to the plane, each cause in one line.
    void Tell();
    const TargetPlane& target() const { return m_target; }

 private:
    void CheckAxes(const OGRSpatialReference* source, double x, double y, double width, double height,
                   const std::string& file) const;
    std::unique_ptr<OGRSpatialReference> SourceOf(const OGRSpatialReference* system) const;
    void Remember(const std::string& cause, const std::string& file);
    void ChangeDatum(const OGRSpatialReference& source, const std::string& file, PlaneMap& map);
    void ChooseZone(double longitude);
    void TellSeriesError();
    void TakeNamedZone();
    void TakeAreaOfSheet();
    int SelectorFor(const OGRSpatialReference& source) const;
    bool StaysInItsPlane(const OGRSpatialReference& source) const;

    struct First;  // the layer that the plane goes by
    PlaneOptions m_options;
    Report& m_report;
    TargetPlane m_target;
    double m_scale = 1000.0;
    std::unique_ptr<First> m_first;
    GeographicBox m_area;  // of all layers, degrees
    std::vector<std::pair<std::string, std::vector<std::string>>> m_causes;
};

}  // namespace zm::tool
