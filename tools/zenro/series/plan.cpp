#include "tools/zenro/series/plan.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <set>

#include <nlohmann/json.hpp>

#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/dataset.h"
#include "tools/zenro/map/watched_files.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr const char* kStates[] = {N_("due"), N_("done"), N_("partly"), N_("empty"), N_("failed")};
constexpr const char* kAround[] = {"nw", "n", "ne", "w", "e", "sw", "s", "se"};
constexpr char kGeographic[] = "geographic";

std::string Reason() {
    return CPLGetLastErrorMsg();
}

// The fields of a sheet with their kinds, in the order of the table.
struct Column {
    const char* name;
    OGRFieldType type;
};
constexpr Column kColumns[] = {
    {"number", OFTString},
    {"name", OFTString},
    {"state", OFTString},
    {"reason", OFTString},
    {"x1", OFTReal},
    {"y1", OFTReal},
    {"x2", OFTReal},
    {"y2", OFTReal},
    {"nw", OFTString},
    {"n", OFTString},
    {"ne", OFTString},
    {"w", OFTString},
    {"e", OFTString},
    {"sw", OFTString},
    {"s", OFTString},
    {"se", OFTString},
    {"features", OFTInteger64},
    {"cost", OFTReal},
    {"seconds", OFTReal},
    {"warnings", OFTInteger64},
    {"input", OFTString},
    {"files", OFTString},
    {"run", OFTInteger64},
    {"node", OFTString},
};

[[noreturn]] void CannotWrite(const std::string& path) {
    throw Failure(kNoOutput, Phrase("{0}: the plan cannot be written: {1}.", path, Reason()));
}

OGRLayer& MakeTable(GDALDataset& dataset, const Plan& plan, const std::string& path) {
    const auto system = plan.settings.find("system");
    OGRSpatialReference degrees;
    degrees.importFromEPSG(4490);
    const bool geographic = system != plan.settings.end() && system->second == kGeographic;
    OGRLayer* layer = dataset.CreateLayer("sheets", geographic ? &degrees : nullptr, wkbPolygon, nullptr);
    if (layer == nullptr) CannotWrite(path);
    for (const Column& column : kColumns) {
        OGRFieldDefn field(column.name, column.type);
        if (layer->CreateField(&field) != OGRERR_NONE) CannotWrite(path);
    }
    return *layer;
}

void Fill(OGRFeature& feature, const PlanSheet& s) {
    feature.SetField("number", s.number.c_str());
    feature.SetField("name", s.name.c_str());
    feature.SetField("state", NameOf(s.state));
    feature.SetField("reason", s.reason.c_str());
    feature.SetField("x1", s.box.x1);
    feature.SetField("y1", s.box.y1);
    feature.SetField("x2", s.box.x2);
    feature.SetField("y2", s.box.y2);
    for (std::size_t i = 0; i < 8; ++i) feature.SetField(kAround[i], s.neighbours[i].c_str());
    feature.SetField("features", static_cast<GIntBig>(s.features));
    feature.SetField("cost", s.cost);
    feature.SetField("seconds", s.seconds);
    feature.SetField("warnings", static_cast<GIntBig>(s.warnings));
    feature.SetField("input", s.input.c_str());
    feature.SetField("files", s.files.c_str());
    feature.SetField("run", static_cast<GIntBig>(s.run));
    feature.SetField("node", s.node.c_str());
    OGRLinearRing ring;
    for (std::size_t i = 0; i < s.outline.size(); ++i) ring.addPoint(s.outline.x[i], s.outline.y[i]);
    OGRPolygon area;
    area.addRing(&ring);
    feature.SetGeometry(&area);
}

void WriteSettings(GDALDataset& dataset, const Plan& plan, const std::string& path) {
    OGRLayer* layer = dataset.CreateLayer("series", nullptr, wkbNone, nullptr);
    if (layer == nullptr) CannotWrite(path);
    for (const char* name : {"key", "value"}) {
        OGRFieldDefn field(name, OFTString);
        if (layer->CreateField(&field) != OGRERR_NONE) CannotWrite(path);
    }
    for (const auto& [key, value] : plan.settings) {
        const FeaturePointer row(OGRFeature::CreateFeature(layer->GetLayerDefn()));
        row->SetField("key", key.c_str());
        row->SetField("value", value.c_str());
        if (layer->CreateFeature(row.get()) != OGRERR_NONE) CannotWrite(path);
    }
}

// Not a number where the field is empty, which is how a database keeps one.
double NumberOf(OGRFeature& row, const char* field) {
    return row.IsFieldSetAndNotNull(row.GetFieldIndex(field)) != FALSE ? row.GetFieldAsDouble(field)
                                                                       : std::numeric_limits<double>::quiet_NaN();
}

PlanSheet SheetOf(OGRFeature& row) {
    PlanSheet s;
    s.number = row.GetFieldAsString("number");
    s.name = row.GetFieldAsString("name");
    if (!ReadState(row.GetFieldAsString("state"), s.state)) s.state = SheetState::due;
    s.reason = row.GetFieldAsString("reason");
    s.box = {NumberOf(row, "x1"), NumberOf(row, "y1"), NumberOf(row, "x2"), NumberOf(row, "y2")};
    for (std::size_t i = 0; i < 8; ++i) s.neighbours[i] = row.GetFieldAsString(kAround[i]);
    s.features = row.GetFieldAsInteger64("features");
    s.cost = row.GetFieldAsDouble("cost");
    s.seconds = row.GetFieldAsDouble("seconds");
    s.warnings = row.GetFieldAsInteger64("warnings");
    s.input = row.GetFieldAsString("input");
    s.files = row.GetFieldAsString("files");
    s.run = row.GetFieldAsInteger64("run");
    s.node = row.GetFieldAsString("node");
    const OGRGeometry* geometry = row.GetGeometryRef();
    if (geometry == nullptr || wkbFlatten(geometry->getGeometryType()) != wkbPolygon) return s;
    const OGRLinearRing* ring = geometry->toPolygon()->getExteriorRing();
    for (int i = 0; ring != nullptr && i < ring->getNumPoints(); ++i) {
        s.outline.x.push_back(ring->getX(i));
        s.outline.y.push_back(ring->getY(i));
    }
    return s;
}

}  // namespace

const char* NameOf(SheetState state) {
    return kStates[static_cast<int>(state)];
}

bool ReadState(const std::string& name, SheetState& state) {
    for (int i = 0; i < 5; ++i)
        if (name == kStates[i]) {
            state = static_cast<SheetState>(i);
            return true;
        }
    return false;
}

void WritePlan(const std::string& path, const Plan& plan, bool overwrite) {
    GDALAllRegister();
    CPLSetErrorHandler(CPLQuietErrorHandler);
    OutputFile out(path, overwrite);
    fs::remove(out.path());  // the driver makes its file itself
    const DriverFault fault;
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    if (driver == nullptr) throw Failure(kNoOutput, Phrase("{0}: GDAL has no GPKG driver here; plans need it.", path));
    Dataset dataset(driver->Create(out.path().c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (dataset == nullptr) CannotWrite(path);
    // One transaction, and no file of the database's own beside it.
    if (dataset->StartTransaction() != OGRERR_NONE) CannotWrite(path);
    OGRLayer& layer = MakeTable(*dataset, plan, path);
    for (const PlanSheet& sheet : plan.sheets) {
        const FeaturePointer row(OGRFeature::CreateFeature(layer.GetLayerDefn()));
        Fill(*row, sheet);
        if (layer.CreateFeature(row.get()) != OGRERR_NONE) CannotWrite(path);
    }
    WriteSettings(*dataset, plan, path);
    if (dataset->CommitTransaction() != OGRERR_NONE) CannotWrite(path);
    dataset.reset();
    if (!fault.words().empty()) {
        CPLErrorSetState(CE_Failure, CPLE_AppDefined, fault.words().c_str());  // the first reason, not the last
        CannotWrite(path);
    }
    out.Commit();
}

namespace {

// What a plan is drawn by: a scale, and lists of texts.
void RequireSettings(const std::map<std::string, std::string>& settings, const std::string& path) {
    const auto damaged = [&](const char* key) {
        return Failure(kNoInput,
                       Phrase("{0}: the setting \"{1}\" of the plan is missing or damaged; plan anew.", path, key));
    };
    double scale = 0.0;
    const auto found = settings.find("scale");
    if (found == settings.end() || !ReadReal(found->second, scale) || !(scale > 0.0)) throw damaged("scale");
    for (const char* key : {"inputs", "arguments"}) {
        const auto list = settings.find(key);
        const auto texts =
            list != settings.end() ? nlohmann::json::parse(list->second, nullptr, false) : nlohmann::json();
        if (!texts.is_array() || !std::all_of(texts.begin(), texts.end(), [](const auto& t) { return t.is_string(); }))
            throw damaged(key);
    }
}

}  // namespace

Plan ReadPlan(const std::string& path) {
    GDALAllRegister();
    CPLSetErrorHandler(CPLQuietErrorHandler);
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        throw Failure(kNoInput, Phrase("{0}: no such plan. Make one: zenro series plan", path));
    const Dataset dataset(static_cast<GDALDataset*>(
        GDALOpenEx(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, nullptr, nullptr, nullptr)));
    OGRLayer* sheets = dataset != nullptr ? dataset->GetLayerByName("sheets") : nullptr;
    OGRLayer* series = dataset != nullptr ? dataset->GetLayerByName("series") : nullptr;
    if (sheets == nullptr || series == nullptr)
        throw Failure(kNoInput, Phrase("{0}: is no plan of sheets. Make one: zenro series plan", path));
    for (const Column& column : kColumns)
        if (sheets->GetLayerDefn()->GetFieldIndex(column.name) < 0)
            throw Failure(kNoInput, Phrase("{0}: the plan has no field \"{1}\"; plan anew.", path, column.name));
    Plan plan;
    const auto next = [&](OGRLayer& layer) {
        CPLErrorReset();
        FeaturePointer row{layer.GetNextFeature()};
        if (row == nullptr && CPLGetLastErrorType() >= CE_Failure)
            throw Failure(kNoInput, Phrase("{0}: cannot be read: {1}.", path, LastReason()));
        return row;
    };
    while (const FeaturePointer row = next(*series))
        plan.settings[row->GetFieldAsString("key")] = row->GetFieldAsString("value");
    RequireSettings(plan.settings, path);
    std::set<std::string> numbers, doubled;
    while (const FeaturePointer row = next(*sheets)) {
        plan.sheets.push_back(SheetOf(*row));
        const std::string& number = plan.sheets.back().number;
        if (number.empty())
            throw Failure(kNoInput, Phrase("{0}: a sheet of the plan has no number; fill it in or plan anew.", path));
        if (!numbers.insert(number).second) doubled.insert(number);
        const Box& b = plan.sheets.back().box;
        if (!std::isfinite(b.x1 + b.y1 + b.x2 + b.y2) || !(b.x1 < b.x2) || !(b.y1 < b.y2))
            throw Failure(kNoInput,
                          Phrase("{0}: sheet {1} has no box: its x1, y1, x2, y2 are no numbers in order; plan anew.",
                                 path, number));
    }
    if (!doubled.empty())
        throw Failure(kNoInput, Phrase("{0}: {1} numbers are in the plan twice, such as {2}; a sheet is drawn once. "
                                       "Remove the rows, or plan anew.",
                                       path, doubled.size(), *doubled.begin()));
    return plan;
}

}  // namespace zm::tool
