#include "tools/zenro/coord/transform_dataset.h"

#include <ogr_spatialref.h>

#include <cmath>

#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"
#include "tools/zenro/map/dataset_copy.h"
#include "tools/zenro/map/plane.h"

namespace zm::tool {
namespace {

using System = std::unique_ptr<OGRSpatialReference>;

// GDAL takes geometries of every kind apart itself and asks for their vertices here.
class Way : public OGRCoordinateTransformation {
 public:
    Way(const Transformation& transformation, double addEast) : m_transformation(transformation), m_addEast(addEast) {}
    OGRSpatialReference* GetSourceCS() override { return nullptr; }
    OGRSpatialReference* GetTargetCS() override { return nullptr; }
    int Transform(int n, double* x, double* y, double* z, double*, int* success) override {
        bool all = true;
        for (int i = 0; i < n; ++i) {
            double first = y[i], second = x[i], height = z != nullptr ? z[i] : NAN;
            const std::string wrong = m_transformation.Apply(first, second, height);
            if (success != nullptr) success[i] = wrong.empty() ? 1 : 0;
            all = all && wrong.empty();
            if (!wrong.empty()) {
                m_wrong = wrong;
                continue;
            }
            x[i] = second + m_addEast;
            y[i] = first;
            if (z != nullptr) z[i] = height;
        }
        return all ? 1 : 0;
    }
    OGRCoordinateTransformation* Clone() const override { return new Way(m_transformation, m_addEast); }
    OGRCoordinateTransformation* GetInverse() const override { return nullptr; }
    const std::string& wrong() const { return m_wrong; }

 private:
    const Transformation& m_transformation;
    double m_addEast;
    std::string m_wrong;
};

int GeographicCode(int selector) {
    return selector == 54 ? 4214 : selector == 80 ? 4610 : 4490;
}

// The register's code of a plane whose eastings have a zone number; 0 if it has none.
int ZoneCode(int selector, int width, int zone) {
    if (width == 3 && zone >= 25 && zone <= 45)
        return (selector == 54 ? 2401 : selector == 80 ? 2349 : 4513) + zone - 25;
    if (width == 6 && zone >= 13 && zone <= 23)
        return (selector == 54 ? 21413 : selector == 80 ? 2327 : 4491) + zone - 13;
    return 0;
}

System SystemOf(const Side& side, int zone) {
    auto system = std::make_unique<OGRSpatialReference>();
    const int selector = side.plane.family.selector();
    const bool byZone = std::isnan(side.plane.meridian);
    system->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (side.kind == PointKind::geographic) {
        system->importFromEPSG(GeographicCode(selector));
        return system;
    }
    const int width = side.plane.zoneWidth;
    const int code = byZone && side.plane.easting == Easting::standard ? ZoneCode(selector, width, zone) : 0;
    if (code != 0) {
        system->importFromEPSG(code);
        system->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        return system;
    }
    const double meridian = byZone ? MeridianOfZone(zone, width) : side.plane.meridian;
    system->SetProjCS((side.plane.family.name + " family, central meridian " + Fixed(meridian, 4)).c_str());
    OGRSpatialReference geographic;
    geographic.importFromEPSG(GeographicCode(selector));
    system->CopyGeogCSFrom(&geographic);
    system->SetTM(0.0, meridian, 1.0, OutsideEasting(side.plane, 0.0, zone), 0.0);
    return system;
}

// The side that a system is, as far as it is one of ours: degrees or Gauss-Krueger on a family's ellipsoid.
void SideOf(const OGRSpatialReference& system, const std::string& name, Side& side) {
    double meridian = 0.0, offset = 0.0;
    const int family = FamilyOf(system);
    if (family != 0) side.plane.family.name = family == 54 ? "54" : family == 80 ? "80" : "2000";
    if (family != 0 && system.IsGeographic() != FALSE) {
        side.kind = PointKind::geographic;
        return;
    }
    if (family == 0 || !IsGaussKrueger(system, meridian, offset))
        throw Failure(kNoInput, Phrase("{0}: its system, {1}, is neither degrees nor Gauss-Krueger of a family; bring "
                                       "it there first, for instance with ogr2ogr -t_srs EPSG:4490.",
                                       name, system.GetName()));
    side.kind = PointKind::plane;
    side.plane.meridian = meridian;
    side.plane.easting = offset == 0.0 ? Easting::natural : Easting::standard;
}

// The zone that a whole data set is in: that of the middle of its first geometry.
int ZoneOfData(LayerReader& reader, const Transformation& transformation) {
    if (!std::isnan(transformation.to.plane.meridian) || transformation.to.kind != PointKind::plane) return 0;
    Transformation toDegrees = transformation;
    toDegrees.to.kind = PointKind::geographic;
    reader.Rewind();
    while (const FeaturePointer feature = reader.Next()) {
        const OGRGeometry* geometry = feature->GetGeometryRef();
        if (geometry == nullptr || geometry->IsEmpty() != FALSE) continue;
        OGREnvelope box;
        geometry->getEnvelope(&box);
        double first = (box.MinY + box.MaxY) / 2.0, second = (box.MinX + box.MaxX) / 2.0, height = NAN;
        if (!toDegrees.Apply(first, second, height).empty()) continue;
        const int width = transformation.to.plane.zoneWidth;
        return ZoneNumber(CentralMeridian(second, width), width);
    }
    return 0;
}

}  // namespace

long TransformDataset(const DatasetTransform& options, Transformation transformation, Report& report) {
    const TextDecoder decoder(options.encoding);
    std::vector<OpenInput> kept;
    const auto readers = OpenLayers({options.input}, {}, decoder, report, kept);
    DatasetCopy copy(options.output, options.overwrite, report);
    for (const auto& reader : readers) {
        Transformation own = transformation;
        if (!options.fromGiven && reader->system() != nullptr) SideOf(*reader->system(), reader->name(), own.from);
        if (!options.fromGiven && reader->system() == nullptr)
            throw Failure(kNoInput,
                          Phrase("{0}: names no coordinate system; give --from, and --from-meridian or --from-zone.",
                                 reader->name()));
        if (!options.toGiven) own.to.plane.family = own.from.plane.family;
        own.Check();
        const int zone = ZoneOfData(*reader, own);
        const System system = SystemOf(own.to, zone);
        // One data set is one plane, also where it reaches into the next zone.
        if (zone != 0) own.to.plane.meridian = MeridianOfZone(zone, own.to.plane.zoneWidth);
        const double zoneNumber =
            zone != 0 && own.to.plane.easting == Easting::standard && !own.four ? zone * kZone : 0.0;
        OGRLayer& layer = copy.AddLayer(*reader, system.get());
        Way way(own, zoneNumber);
        reader->Rewind();
        while (const FeaturePointer feature = reader->Next()) {
            const FeaturePointer moved = copy.Copy(layer, *feature);
            OGRGeometry* geometry = moved->GetGeometryRef();
            if (geometry != nullptr && geometry->IsEmpty() == FALSE) {
                geometry->assignSpatialReference(nullptr);
                if (geometry->transform(&way) != OGRERR_NONE) {
                    report.Skip(N_("features without a place"), Phrase("{0}: feature {1}: {2}; it is left out.",
                                                                       reader->name(), feature->GetFID(), way.wrong()));
                    continue;
                }
            }
            copy.Write(layer, *moved);
        }
    }
    copy.Finish();
    return copy.written();
}

}  // namespace zm::tool
