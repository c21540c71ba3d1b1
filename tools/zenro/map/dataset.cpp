#include "tools/zenro/map/dataset.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <utility>
#include <vector>

#include "tools/kit/shown_text.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/rules.h"
#include "tools/zenro/map/watched_files.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

// GDAL's own words are asked for where they matter, and kept from stderr.
void BeSilent() {
    static const bool once = [] {
        CPLSetErrorHandler(CPLQuietErrorHandler);
        GDALAllRegister();
        // A feature of a million points is no attack here; the user's own setting goes first.
        if (CPLGetConfigOption("OGR_GEOJSON_MAX_OBJ_SIZE", nullptr) == nullptr)
            CPLSetConfigOption("OGR_GEOJSON_MAX_OBJ_SIZE", "0");
        return true;
    }();
    static_cast<void>(once);
}

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && EQUAL(text.c_str() + text.size() - end.size(), end.c_str());
}

// What a driver calls itself; nothing where there is none.
std::string DriverOf(GDALDataset& dataset) {
    GDALDriver* driver = dataset.GetDriver();
    return driver != nullptr ? driver->GetDescription() : "";
}

// Formats whose texts are handed on as the bytes of the file, or can be made to be.
bool GivesRawTexts(GDALDataset& dataset) {
    const std::string name = DriverOf(dataset);
    for (const char* raw : {"CSV", "ESRI Shapefile", "DXF", "GeoJSON", "GeoJSONSeq", "ESRIJSON", "TopoJSON"})
        if (name == raw) return true;
    return false;
}

// Sources whose features come in the order of an index, or of rows on a disk.
bool IsDatabase(const std::string& driver) {
    static constexpr const char* kDatabases[] = {"PostgreSQL",   "GPKG", "SQLite", "MySQL",
                                                 "MSSQLSpatial", "OCI",  "HANA",   "ODBC"};
    return std::any_of(std::begin(kDatabases), std::end(kDatabases),
                       [&](const char* known) { return driver == known; });
}

// A name, or a text, in SQL.
std::string Quoted(const std::string& text, char quote) {
    std::string quoted(1, quote);
    for (const char c : text) quoted.append(c == quote ? 2 : 1, c);
    return quoted + quote;
}

using Result = std::shared_ptr<OGRLayer>;

Result ResultOf(GDALDataset& dataset, const std::string& statement) {
    CPLErrorReset();
    OGRLayer* result = dataset.ExecuteSQL(statement.c_str(), nullptr, nullptr);
    if (result == nullptr) return nullptr;
    return {result, [&dataset](OGRLayer* layer) { dataset.ReleaseResultSet(layer); }};
}

// The table of a PostgreSQL layer as its driver names it in statements; nothing where the name has two meanings.
std::string TableOf(GDALDataset& dataset, const std::string& layer) {
    if (layer.find_first_of("(\\") != std::string::npos) return {};  // one of several geometries of a table
    const std::size_t dot = layer.find('.');
    if (dot == std::string::npos) return Quoted(layer, '"');
    if (layer.find('.', dot + 1) != std::string::npos) return {};
    const std::string text = Quoted(layer, '\'');
    const Result same = ResultOf(dataset, "SELECT 1 FROM pg_catalog.pg_class WHERE relname = " + text);
    if (same == nullptr || FeaturePointer(same->GetNextFeature()) != nullptr) return {};
    return Quoted(layer.substr(0, dot), '"') + "." + Quoted(layer.substr(dot + 1), '"');
}

// True if values of both fields are the same, and read the same as text.
bool ReadAlike(const OGRFieldDefn& a, const OGRFieldDefn& b) {
    if (a.GetType() != b.GetType() || a.GetSubType() != b.GetSubType()) return false;
    return a.GetType() == OFTString || (a.GetWidth() == b.GetWidth() && a.GetPrecision() == b.GetPrecision());
}

// Drivers of KML hold the whole file, and several times more, in memory.
void RefuseTooLarge(const fs::path& path, const std::string& driver, const std::string& shown) {
    constexpr std::uintmax_t kLargest = std::uintmax_t{1} << 30;
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (!error && size > kLargest && (driver == "LIBKML" || driver == "KML"))
        throw Failure(kNoInput, Phrase("{0}: is larger than {1} MiB; divide it, or make a GeoPackage of it.", shown,
                                       kLargest >> 20));
}

// An input whose driver reads it through GDAL is watched; databases notice by themselves what fails, and lock the file.
std::string WatchedWherePossible(const std::string& name, const std::string& shown) {
    for (const std::string archive : {"/vsizip/", "/vsitar/", "/vsigzip/"})
        if (name.rfind(archive + "/", 0) == 0) return archive + WatchedInput(name.substr(archive.size()));
    std::error_code error;
    const fs::path path = PathOf(name);
    if (!fs::is_regular_file(path, error) && !fs::is_directory(path, error)) return name;
    auto* driver = static_cast<GDALDriver*>(GDALIdentifyDriverEx(name.c_str(), GDAL_OF_VECTOR, nullptr, nullptr));
    if (driver == nullptr) return name;
    RefuseTooLarge(path, driver->GetDescription(), shown);
    if (IsDatabase(driver->GetDescription()) || driver->GetMetadataItem(GDAL_DCAP_VIRTUALIO) == nullptr) return name;
    return WatchedInput(fs::absolute(path));
}

Dataset OpenOne(const std::string& gdalName, const std::string& shown, const TextDecoder& decoder) {
    BeSilent();
    CPLStringList openOptions;
    if (decoder.named()) {
        // Formats that change the encoding themselves are asked to leave the bytes alone.
        openOptions.SetNameValue("ENCODING", decoder.plain() ? "UTF-8" : "");
        CPLSetConfigOption("DXF_ENCODING", "UTF-8");
    }
    const auto open = [&](const std::string& name) {
        CPLErrorReset();
        return Dataset(static_cast<GDALDataset*>(
            GDALOpenEx(name.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, nullptr, openOptions.List(), nullptr)));
    };
    const std::string watched = WatchedWherePossible(gdalName, shown);
    Dataset dataset = open(watched);
    RefuseReadFault();
    if (dataset == nullptr && watched != gdalName) dataset = open(gdalName);
    if (dataset == nullptr)
        throw Failure(kNoInput,
                      Phrase("{0}: cannot be read as map data: {1}. Try ogrinfo on it.", shown, LastReason()));
    return dataset;
}

// A statement of a database that failed may be of a thousand characters: its beginning and its end say enough.
void ShortenReason(std::string& reason) {
    constexpr std::size_t kLongest = 300;
    if (reason.size() <= kLongest) return;
    const auto insideOfCharacter = [&](std::size_t at) {
        return (static_cast<unsigned char>(reason[at]) & 0xC0U) == 0x80U;
    };
    std::size_t head = kLongest / 2, tail = reason.size() - kLongest / 2;
    while (insideOfCharacter(head)) --head;
    while (insideOfCharacter(tail)) --tail;
    reason.replace(head, tail - head, " ... ");
}

// The map files in an archive, by their extensions.
std::vector<std::string> MapFilesIn(const std::string& archive) {
    std::vector<std::string> names;
    const CPLStringList all(VSIReadDirRecursive(archive.c_str()));
    for (int i = 0; i < all.size(); ++i)
        for (const char* extension :
             {".shp", ".gpkg", ".geojson", ".json", ".gml", ".kml", ".tab", ".mif", ".csv", ".dxf", ".fgb", ".sqlite"})
            if (EndsWith(all[i], extension)) names.emplace_back(all[i]);
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<OpenInput> OpenArchive(const std::string& input, const char* prefix, const TextDecoder& decoder) {
    BeSilent();
    const std::string root = prefix + fs::absolute(input).string();
    std::vector<OpenInput> opened;
    for (const std::string& name : MapFilesIn(root)) {
        const std::string shown = fs::path(input).filename().string() + "/" + name;
        opened.push_back({OpenOne(std::string(root).append("/").append(name), shown, decoder), {}, shown, {}});
    }
    if (opened.empty()) throw Failure(kNoInput, Phrase("{0}: no map file that is known in this archive.", input));
    return opened;
}

std::vector<OpenInput> OpenStdin(const TextDecoder& decoder) {
    BeSilent();
    constexpr std::size_t kLargest = std::size_t{4} << 30;
    static std::string bytes;  // stays as long as the dataset over it
    bytes = ReadStandardInput(kLargest);
    if (bytes.empty()) throw Failure(kNoInput, Phrase("-: stdin is empty."));
    constexpr char kName[] = "/vsimem/zenro/stdin";
    VSIFCloseL(VSIFileFromMemBuffer(kName, reinterpret_cast<GByte*>(bytes.data()), bytes.size(), FALSE));
    std::vector<OpenInput> opened;
    opened.push_back({OpenOne(kName, "stdin", decoder), {}, "stdin", {}});
    return opened;
}

}  // namespace

std::string LastReason() {
    std::string reason = WithoutSecrets(WithPlainNames(CPLGetLastErrorMsg()));  // before it is cut
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    ShortenReason(reason);
    while (!reason.empty() && (reason.back() == '.' || reason.back() == ' ')) reason.pop_back();
    return reason.empty() ? Phrase("no driver knows it") : reason;
}

std::string QuoteNames(const std::string& condition) {
    std::string result;
    char quote = '\0';
    const auto isWord = [](char c) {
        const auto u = static_cast<unsigned char>(c);
        return u >= 0x80 || c == '_' || (c >= '0' && c <= '9') || ((u | 0x20U) >= 'a' && (u | 0x20U) <= 'z');
    };
    for (std::size_t i = 0; i < condition.size();) {
        const char c = condition[i];
        if (quote == '\0' && isWord(c)) {
            std::size_t end = i;
            bool plain = true;
            for (; end < condition.size() && isWord(condition[end]); ++end)
                plain = plain && static_cast<unsigned char>(condition[end]) < 0x80;
            const std::string word = condition.substr(i, end - i);
            result += plain ? word : '"' + word + '"';
            i = end;
            continue;
        }
        if (quote != '\0') {
            if (c == quote) quote = '\0';
        } else if (c == '\'' || c == '"') {
            quote = c;
        }
        result += c;
        ++i;
    }
    return result;
}

std::vector<OpenInput> OpenInputs(const std::string& input, const TextDecoder& decoder) {
    if (input == "-") return OpenStdin(decoder);
    std::error_code error;
    std::string file = input, layer;
    if (!fs::exists(file, error)) {
        // FILE:LAYER, as for a GeoPackage of several layers
        const std::size_t colon = input.rfind(':');
        if (colon != std::string::npos && colon > 1 && fs::exists(input.substr(0, colon), error)) {
            file = input.substr(0, colon);
            layer = input.substr(colon + 1);
        } else if (colon == std::string::npos && input.rfind("/vsi", 0) != 0) {
            throw Failure(kNoInput, Phrase("{0}: no such file. Check the path.", input));
        }
    } else if (fs::is_regular_file(file, error) && fs::file_size(file, error) == 0) {
        throw Failure(kNoInput, Phrase("{0}: is empty.", input));
    }
    std::vector<OpenInput> opened;
    const bool isFile = fs::is_regular_file(file, error);
    if (isFile && EndsWith(file, ".zip")) {
        opened = OpenArchive(file, "/vsizip/", decoder);
    } else if (isFile && (EndsWith(file, ".tar") || EndsWith(file, ".tgz") || EndsWith(file, ".tar.gz"))) {
        opened = OpenArchive(file, "/vsitar/", decoder);
    } else {
        const std::string name = isFile && EndsWith(file, ".gz") ? "/vsigzip/" + fs::absolute(file).string() : file;
        opened.push_back({OpenOne(name, input, decoder), {}, fs::path(file).filename().string(), {}});
    }
    for (OpenInput& one : opened) one.layer = layer;
    return opened;
}

std::vector<std::string> FilesOf(GDALDataset& dataset) {
    std::vector<std::string> files;
    std::error_code error;
    char** list = dataset.GetFileList();
    for (char** one = list; one != nullptr && *one != nullptr; ++one)
        if (const std::string file = WithPlainNames(*one); fs::is_regular_file(PathOf(file), error))
            files.push_back(file);
    CSLDestroy(list);
    if (IsDatabase(DriverOf(dataset)) && !files.empty()) files.push_back(files.front() + "-wal");
    return files;
}

LayerReader::LayerReader(GDALDataset& dataset, OGRLayer& layer, bool own, std::string name, const TextDecoder& decoder,
                         const Selection& selection, Report& report)
    : m_dataset(dataset),
      m_layer(layer),
      m_isOwn(own),
      m_name(std::move(name)),
      m_layerName(layer.GetName()),
      m_rawTexts(GivesRawTexts(dataset)),
      m_decoder(decoder),
      m_report(report),
      m_limit(selection.limit),
      m_isDatabase(IsDatabase(DriverOf(dataset))) {
    m_fields = layer.GetLayerDefn()->Clone();
    m_fields->Reference();
    for (int i = 0; i < m_fields->GetFieldCount(); ++i) {
        std::string field = m_fields->GetFieldDefn(i)->GetNameRef();
        if (m_rawTexts || !IsUtf8(field)) {
            if (!m_decoder.Decode(field)) TellBadText(Phrase("the names of its fields"), m_name);
            m_fields->GetFieldDefn(i)->SetName(field.c_str());
        }
    }
    if (selection.where.empty()) return;
    m_where = std::make_unique<OGRFeatureQuery>();
    CPLErrorReset();
    const std::string where = QuoteNames(selection.where);
    if (m_where->Compile(m_fields, where.c_str(), TRUE, nullptr) != OGRERR_NONE)
        throw Failure(kUsage, Phrase("--where \"{0}\" does not fit {1}: {2}.", selection.where, m_name, LastReason()));
}

LayerReader::~LayerReader() {
    m_fields->Release();
}

long long LayerReader::count() const {
    if (m_where != nullptr) return -1;
    const GIntBig all = m_layer.GetFeatureCount(FALSE);
    return m_limit >= 0 && all > m_limit ? m_limit : all;
}

void LayerReader::TellBadText(const std::string& field, const std::string& where) {
    if (std::exchange(m_toldText, true)) return;
    m_report.Skip(N_("texts of another encoding"),
                  Phrase(m_decoder.named() ? N_("{0}: {1} is no {2}, and cannot be read rightly; give --encoding with "
                                                "the right name (GBK, GB18030, UTF-8).")
                                           : N_("{0}: {1} is no {2}, and cannot be read rightly; give --encoding GBK, "
                                                "or the one it has."),
                         where, field, m_decoder.named() ? m_decoder.name() : "UTF-8"));
}

FeaturePointer LayerReader::Find(GIntBig fid) {
    AskForAll();
    FeaturePointer feature(m_layer.GetFeature(fid));
    if (feature != nullptr) Decode(*feature);
    return feature;
}

void LayerReader::Decode(OGRFeature& feature) {
    for (int i = 0; i < m_fields->GetFieldCount(); ++i) {
        if (m_fields->GetFieldDefn(i)->GetType() != OFTString || !feature.IsFieldSetAndNotNull(i)) continue;
        const char* stored = feature.GetFieldAsString(i);
        if (m_decoder.plain() || !m_rawTexts) {
            if (IsUtf8(stored)) continue;
        }
        std::string text = stored;
        if (!m_decoder.Decode(text)) {
            TellBadText(Phrase("field \"{0}\"", m_fields->GetFieldDefn(i)->GetNameRef()),
                        Phrase("{0}: feature {1}", m_name, feature.GetFID()));
            continue;
        }
        if (text != stored) feature.SetField(i, text.c_str());
    }
}

bool LayerReader::hasIndex() const {
    // A limit counts the features of the whole layer.
    return m_limit < 0 && m_layer.TestCapability(OLCFastSpatialFilter) != FALSE;
}

bool LayerReader::KnownExtent(OGREnvelope& extent) const {
    // PostgreSQL looks at all rows of a table that has no statistics.
    return DriverOf(m_dataset) != "PostgreSQL" && m_layer.GetExtent(&extent, FALSE) == OGRERR_NONE;
}

void LayerReader::AskFor(const std::vector<std::string>& used) {
    std::set<int> kept;
    for (const std::string& name : used) kept.insert(m_fields->GetFieldIndex(name.c_str()));
    if (m_where != nullptr) {
        const CPLStringList names(m_where->GetUsedFields());
        for (int i = 0; i < names.size(); ++i) kept.insert(m_fields->GetFieldIndex(names[i]));
    }
    if (m_layer.TestCapability(OLCIgnoreFields) == FALSE) {
        if (m_isOwn && DriverOf(m_dataset) == "PostgreSQL") SelectColumns(kept);
        return;
    }
    CPLStringList ignored;
    ignored.AddString("OGR_STYLE");
    const OGRFeatureDefn& fields = *m_layer.GetLayerDefn();
    for (int i = 0; i < fields.GetFieldCount(); ++i)
        if (kept.count(i) == 0) ignored.AddString(fields.GetFieldDefn(i)->GetNameRef());
    m_layer.SetIgnoredFields(const_cast<const char**>(ignored.List()));
}

void LayerReader::AskForAll() {
    m_layer.SetIgnoredFields(nullptr);
    m_selected = nullptr;
}

// Where the driver cannot ignore fields a statement of our own leaves them out. It has as many columns as the layer, so
// that fields keep their indexes; where it does not give what the layer gives, the layer is read.
void LayerReader::SelectColumns(const std::set<int>& kept) {
    constexpr char kNumber[] = "ogc_fid";  // what the driver takes for the number of the features of a result
    OGRFeatureDefn& fields = *m_layer.GetLayerDefn();
    const int count = fields.GetFieldCount();
    if (std::count_if(kept.begin(), kept.end(), [](int i) { return i >= 0; }) == count) return;
    const std::string number = m_layer.GetFIDColumn(), geometry = m_layer.GetGeometryColumn();
    if (number.empty() || geometry.empty()) return;
    const std::string table = TableOf(m_dataset, m_layerName);
    if (table.empty()) return;
    std::string statement = "SELECT " + Quoted(number, '"') + " AS " + kNumber + ", " + Quoted(geometry, '"');
    for (int i = 0; i < count; ++i)
        statement += ", " + (kept.count(i) > 0 ? Quoted(fields.GetFieldDefn(i)->GetNameRef(), '"')
                                               : "NULL AS unused_" + std::to_string(i));
    const Result result = ResultOf(m_dataset, statement + " FROM " + table);
    if (result == nullptr) return;
    OGRFeatureDefn& selected = *result->GetLayerDefn();
    bool same = selected.GetFieldCount() == count && selected.GetGeomFieldCount() == 1 &&
                std::string(result->GetFIDColumn()) == kNumber;
    for (const int i : kept) same = same && (i < 0 || ReadAlike(*selected.GetFieldDefn(i), *fields.GetFieldDefn(i)));
    if (!same) return;
    result->GetSpatialRef();  // else the driver does not know the system of a window
    m_selected = result;
}

void LayerReader::SetWindow(const OGREnvelope* box) {
    if (box == nullptr)
        read().SetSpatialFilter(nullptr);
    else
        read().SetSpatialFilterRect(box->MinX, box->MinY, box->MaxX, box->MaxY);
}

void LayerReader::Rewind() {
    read().ResetReading();
    m_taken = 0;
}

FeaturePointer LayerReader::Next() {
    while (m_limit < 0 || m_taken < m_limit) {
        CheckStop();
        CPLErrorReset();
        FeaturePointer feature(read().GetNextFeature());
        if (feature == nullptr) {
            RefuseReadFault();
            if (CPLGetLastErrorType() == CE_Failure && !std::exchange(m_toldEnd, true))
                m_report.Skip(N_("layers that end early"),
                              Phrase("{0}: reading ended early: {1}.", m_name, LastReason()));
            return nullptr;
        }
        Decode(*feature);
        if (m_where != nullptr && m_where->Evaluate(feature.get()) == FALSE) continue;
        ++m_taken;
        return feature;
    }
    return nullptr;
}

namespace {

bool Asked(const std::string& name, const std::string& ofInput, const Selection& selection) {
    if (!ofInput.empty() && !FitsGlob(ofInput, name)) return false;
    if (selection.layers.empty()) return true;
    return std::any_of(selection.layers.begin(), selection.layers.end(),
                       [&](const std::string& pattern) { return FitsGlob(pattern, name); });
}

std::string NamesOf(GDALDataset& dataset) {
    std::string names;
    for (OGRLayer* layer : dataset.GetLayers()) names += (names.empty() ? "" : ", ") + std::string(layer->GetName());
    return names;
}

}  // namespace

std::vector<std::unique_ptr<LayerReader>> OpenLayers(const std::vector<std::string>& inputs, const Selection& selection,
                                                     const TextDecoder& decoder, Report& report,
                                                     std::vector<OpenInput>& kept) {
    std::vector<std::unique_ptr<LayerReader>> readers;
    std::string seen;
    for (const std::string& input : inputs) {
        std::vector<OpenInput> opened = OpenInputs(input, decoder);
        for (OpenInput& one : opened) {
            GDALDataset& dataset = *one.dataset;
            const auto add = [&](OGRLayer& layer, bool own) {
                readers.push_back(std::make_unique<LayerReader>(dataset, layer, own, one.name + ": " + layer.GetName(),
                                                                decoder, selection, report));
            };
            if (!selection.sql.empty()) {
                one.result = ResultOf(dataset, QuoteNames(selection.sql));
                if (one.result == nullptr)
                    throw Failure(kUsage, Phrase("--sql: {0}: {1}.", one.name,
                                                 (CPLGetLastErrorNo() != 0 ? LastReason()
                                                                           : Phrase("the statement has no result"))));
                add(*one.result, false);
            } else {
                if (dataset.GetLayerCount() == 0)
                    throw Failure(kNoInput, Phrase("{0}: holds no layer of features.", input));
                seen += (seen.empty() ? "" : "; ") + one.name + ": " + NamesOf(dataset);
                bool any = false;
                for (OGRLayer* layer : dataset.GetLayers()) {
                    if (!Asked(layer->GetName(), one.layer, selection)) continue;
                    add(*layer, true);
                    any = true;
                }
                if (!any && !one.layer.empty())
                    throw Failure(kNoInput, Phrase("{0}: no layer \"{1}\" in it; it has {2}.", input, one.layer,
                                                   NamesOf(dataset)));
            }
            kept.push_back(std::move(one));
        }
    }
    if (readers.empty()) throw Failure(kNoInput, Phrase("no layer fits --layer; there are {0}.", seen));
    return readers;
}

}  // namespace zm::tool
