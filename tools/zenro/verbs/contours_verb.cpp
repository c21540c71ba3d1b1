// zenro contours: points of known height to contours, in any format that GDAL/OGR writes.
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <cstdio>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/dataset.h"
#include "tools/zenro/map/output_dataset.h"
#include "tools/zenro/relief/terrain.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {
namespace {

struct ContoursOptions {
    std::vector<std::string> inputs, breakLines;
    std::string output, field;
    double interval = 0.0;
    bool overwrite = false;
};

// Everything of known height in the inputs.
struct Survey {
    std::vector<TerrainPoint> points;
    std::vector<BreakLine> breakLines;
    std::unique_ptr<OGRSpatialReference> system;
};

class Reader {
 public:
    Reader(const ContoursOptions& options, Survey& survey, Report& report)
        : m_options(options), m_survey(survey), m_report(report) {}

    /// \param breaks  lines are break lines; elsewhere their points count as points
    void Read(const std::string& path, bool breaks) {
        for (const OpenInput& input : OpenInputs(path, TextDecoder({})))
            for (OGRLayer* layer : input.dataset->GetLayers())
                if (input.layer.empty() || input.layer == layer->GetName()) Read(*layer, input.name, breaks);
    }

 private:
    void Read(OGRLayer& layer, const std::string& name, bool breaks) {
        TakeSystem(layer, name);
        const int field = m_options.field.empty() ? -1 : layer.GetLayerDefn()->GetFieldIndex(m_options.field.c_str());
        layer.ResetReading();
        for (const OGRFeatureUniquePtr& feature : layer) {
            const std::string where = Phrase("{0}: feature {1}", name, feature->GetFID());
            const bool given = field >= 0 && feature->IsFieldSetAndNotNull(field);
            const double height = given ? feature->GetFieldAsDouble(field) : NAN;
            Take(feature->GetGeometryRef(), height, breaks, where);
        }
    }

    void TakeSystem(OGRLayer& layer, const std::string& path) {
        const OGRSpatialReference* system = layer.GetSpatialRef();
        if (system == nullptr) return;
        if (m_survey.system == nullptr)
            m_survey.system.reset(system->Clone());
        else if (m_survey.system->IsSame(system) == 0)
            throw Failure(kUsage,
                          Phrase("{0}: is in another system than the inputs before; bring all to one system.", path));
    }

    void Take(const OGRGeometry* geometry, double height, bool breaks, const std::string& where) {
        if (geometry == nullptr || geometry->IsEmpty()) {
            m_report.Skip(N_("features without geometry"), Phrase("{0}: has no geometry; it is left out.", where));
            return;
        }
        const OGRwkbGeometryType type = wkbFlatten(geometry->getGeometryType());
        if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection)) {
            for (const OGRGeometry* part : *geometry->toGeometryCollection()) Take(part, height, breaks, where);
            return;
        }
        std::vector<TerrainPoint> points;
        const auto add = [&](const OGRPoint& p) {
            const double z = std::isnan(height) && p.Is3D() ? p.getZ() : height;
            points.push_back({p.getX(), p.getY(), z});
        };
        if (type == wkbPoint) add(*geometry->toPoint());
        if (type == wkbLineString)
            for (const OGRPoint& p : *geometry->toLineString()) add(p);
        if (points.empty()) {
            m_report.Skip(N_("features that are no points or lines"),
                          Phrase("{0}: is no point or line; it is left out.", where));
            return;
        }
        for (const TerrainPoint& p : points)
            if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) {
                m_report.Skip(
                    N_("features without height"),
                    Phrase("{0}: has no height; give --field NAME or coordinates with z. It is left out.", where));
                return;
            }
        if (breaks && points.size() > 1)
            m_survey.breakLines.push_back(std::move(points));
        else
            m_survey.points.insert(m_survey.points.end(), points.begin(), points.end());
    }

    const ContoursOptions& m_options;
    Survey& m_survey;
    Report& m_report;
};

void Write(OutputDataset& out, const Survey& survey, const std::vector<ContourLine>& lines) {
    OGRLayer& layer = out.AddLayer("contours", survey.system.get(), wkbLineString);
    OGRFieldDefn height("height", OFTReal), index("index", OFTInteger);
    if (layer.CreateField(&height) != OGRERR_NONE || layer.CreateField(&index) != OGRERR_NONE) out.CannotWrite();
    for (const ContourLine& line : lines) {
        OGRFeature feature(layer.GetLayerDefn());
        feature.SetField(0, line.height);
        feature.SetField(1, line.index ? 1 : 0);
        OGRLineString geometry;
        for (std::size_t i = 0; i < line.x.size(); ++i) geometry.addPoint(line.x[i], line.y[i]);
        feature.SetGeometry(&geometry);
        out.Write(layer, feature);
    }
    out.Finish();
}

void Contour(const ContoursOptions& options, Context& context) {
    OutputDataset out(options.output, options.overwrite);
    Survey survey;
    Reader reader(options, survey, context.report);
    for (const std::string& input : options.inputs) reader.Read(input, false);
    for (const std::string& input : options.breakLines) reader.Read(input, true);
    const Terrain terrain = Triangulate(survey.points, survey.breakLines);
    if (terrain.duplicates > 0)
        context.report.Note(
            Phrase("{0} points lie where another one does; the first of them counts.", terrain.duplicates));
    const std::vector<ContourLine> lines = ContoursOf(terrain, options.interval);
    if (lines.empty())
        throw Failure(kFailed, Phrase("no contours: the heights lie between two of them. Take a smaller --interval."));
    Write(out, survey, lines);
    if (context.json) {
        nlohmann::ordered_json j;
        j["output"] = options.output;
        j["points"] = terrain.points.size();
        j["triangles"] = terrain.triangles.size();
        j["contours"] = lines.size();
        WriteLine(j.dump(2));
    } else {
        WriteLine(options.output);
    }
    context.status = context.report.status();
}

}  // namespace

void AddContoursVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("contours", "Contours through points of known height");
    const auto options = std::make_shared<ContoursOptions>();
    verb.AddOption("IN", options->inputs, "Points, or lines whose points count: anything GDAL/OGR reads").Required();
    verb.AddOption("-o,--output", options->output, "Output; its extension says the format; -.geojson is stdout")
        .Required();
    verb.AddOption("--interval", options->interval, "Metres between contours; every fifth is an index contour")
        .Required()
        .Within(0.001, 10000.0);
    verb.AddOption("--field", options->field, "Field with the height, in place of the z of the coordinates");
    verb.AddOption("--breaklines", options->breakLines, "Lines that the surface bends along, with heights");
    verb.AddFlag("--overwrite", options->overwrite, "Replace an output that exists");
    AddCommonOptions(verb, context);
    verb.OnRun([options, &context] { Contour(*options, context); });
}

}  // namespace zm::tool
