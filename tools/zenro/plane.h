// The way of source coordinates to the plane: the source system read from the data, the library's own projection, and
// no change of datum that is not told.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/zenro/report.h"

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
    /// The same for a Chinese sheet margin, UTF-8.
    std::string DescribeChinese() const;
};

/// Takes the coordinates of one OGR layer to the plane.
class PlaneMap {
 public:
    PlaneMap(PlaneMap&&) noexcept;
    ~PlaneMap();
    /// Maps n points in place: x becomes the easting, y the northing. Points that cannot be mapped become not-a-number.
    void Apply(std::size_t n, double* x, double* y) const;

 private:
    friend class PlaneChooser;
    PlaneMap();
    struct Body;
    std::unique_ptr<Body> m_body;
};

/// Chooses the plane by the first layer that has a system, and makes the map of each layer.
class PlaneChooser {
 public:
    PlaneChooser(const PlaneOptions& options, double scale, Report& report);
    ~PlaneChooser();
    /// Settles the plane, if no earlier layer did. The box is the layer's, in its own system.
    void Settle(const OGRSpatialReference* system, const double box[4], const std::string& layer);
    /// The way of a layer. Call after all layers were shown to Settle.
    PlaneMap MapOf(const OGRSpatialReference* system, const std::string& layer);
    const TargetPlane& target() const { return m_target; }

 private:
    std::unique_ptr<OGRSpatialReference> SourceOf(const OGRSpatialReference* system) const;

    PlaneOptions m_options;
    double m_scale;
    Report& m_report;
    TargetPlane m_target;
};

}  // namespace zm::tool
