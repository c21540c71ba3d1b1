// A change of datum, by an operation that was made for the place.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

class OGRSpatialReference;

namespace zm::tool {

/// Longitudes and latitudes in degrees.
struct GeographicBox {
    double west = 1e300, south = 1e300, east = -1e300, north = -1e300;
    bool empty() const { return west > east; }
    void Add(double longitude, double latitude);
};

/// Takes coordinates from one system to longitude and latitude on another datum.
class DatumWay {
 public:
    /// The most exact operation that PROJ knows from a system to a geographic one and whose area of use holds the whole
    /// box; parameters that the source system itself carries count as made for its data. Null where there is none.
    /// Operations that need a grid file which is not installed are none, and one that changes nothing is none.
    static std::unique_ptr<DatumWay> Find(const OGRSpatialReference& from, int geographicCode,
                                          const GeographicBox& box);
    ~DatumWay();
    DatumWay(const DatumWay&) = delete;
    DatumWay& operator=(const DatumWay&) = delete;

    /// In place: x becomes the longitude, y the latitude, in degrees. Points that cannot be mapped become not-a-number.
    void Apply(std::size_t n, double* x, double* y) const;
    /// "Beijing 1954 to WGS 84 (1) (EPSG:15918), made for China - Tarim basin, good to 1 m".
    const std::string& description() const { return m_description; }

 private:
    DatumWay() = default;
    void* m_context = nullptr;
    void* m_operation = nullptr;
    std::string m_description;
};

}  // namespace zm::tool
