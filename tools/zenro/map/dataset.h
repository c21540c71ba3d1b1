// Opening map data: names as users write them, the layers that were asked for, and features with texts in UTF-8.
#pragma once

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tools/kit/report.h"
#include "tools/kit/text_decoder.h"
#include "tools/zenro/map/selection.h"

namespace zm::tool {

struct DatasetCloser {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using Dataset = std::unique_ptr<GDALDataset, DatasetCloser>;
struct FeatureDestroyer {
    void operator()(OGRFeature* feature) const { OGRFeature::DestroyFeature(feature); }
};
using FeaturePointer = std::unique_ptr<OGRFeature, FeatureDestroyer>;

/// GDAL's last words on one line.
std::string LastReason();

/// An attribute filter in OGR's form: names of fields in other letters than ASCII need no quotes.
std::string QuoteNames(const std::string& condition);

/// One input, opened.
struct OpenInput {
    Dataset dataset;
    std::shared_ptr<OGRLayer> result;  // of --sql; let go before the dataset
    std::string name;                  // for reports: "town.gpkg", "town.zip/roads.shp"
    std::string layer;                 // of FILE:LAYER, else empty
};

/// Opens an input as the user wrote it: a file, FILE:LAYER, a .zip or .tar without prefix (each map file in it becomes
/// one dataset), "-" for stdin, or a name of GDAL's own. Throws Failure (kNoInput).
std::vector<OpenInput> OpenInputs(const std::string& input, const TextDecoder& decoder);

/// The files that hold a dataset, as far as they are files of their own, and beside those of a database the log that has
/// what was written last, be it there or not.
std::vector<std::string> FilesOf(GDALDataset& dataset);

/// The features of one layer with names and texts in UTF-8.
class LayerReader {
 public:
    /// \param dataset  the layer's; outlives the reader
    /// \param own      the layer is one of the dataset, and no result of a statement
    /// \param name     file and layer, for reports
    LayerReader(GDALDataset& dataset, OGRLayer& layer, bool own, std::string name, const TextDecoder& decoder,
                const Selection& selection, Report& report);
    ~LayerReader();
    LayerReader(const LayerReader&) = delete;
    LayerReader& operator=(const LayerReader&) = delete;

    const std::string& name() const { return m_name; }
    const std::string& layerName() const { return m_layerName; }
    const OGRSpatialReference* system() const { return m_layer.GetSpatialRef(); }
    OGRwkbGeometryType geometryType() const { return m_layer.GetGeomType(); }
    /// The fields under their names in UTF-8; indexes are those of the features.
    OGRFeatureDefn& fields() const { return *m_fields; }
    /// -1 where the data cannot say it cheaply, or a filter decides.
    long long count() const;

    /// The layer itself, for its index and its extent.
    OGRLayer& layer() const { return m_layer; }
    /// True where the features come in the order of an index, and not of a file.
    bool isDatabase() const { return m_isDatabase; }
    /// What the source knows of its extent without a look at its features; false where it knows nothing.
    bool KnownExtent(OGREnvelope& extent) const;
    /// True where a window is answered without a look at all features.
    bool hasIndex() const;
    /// Leaves all fields but these, and those of the selection, where they are. Names in UTF-8, letters in either case.
    void AskFor(const std::vector<std::string>& used);
    /// Takes AskFor back.
    void AskForAll();
    /// Next gives what meets a box of the source's own system, by its index; null: all.
    void SetWindow(const OGREnvelope* box);
    /// A feature by its number, with all its fields; null where the source cannot find it so.
    FeaturePointer Find(GIntBig fid);
    /// To the first feature.
    void Rewind();
    /// The next feature that the selection takes; null at the end.
    FeaturePointer Next();

 private:
    void Decode(OGRFeature& feature);
    void TellBadText(const std::string& field, const std::string& where);
    void SelectColumns(const std::set<int>& kept);
    OGRLayer& read() const { return m_selected != nullptr ? *m_selected : m_layer; }

    GDALDataset& m_dataset;
    OGRLayer& m_layer;
    bool m_isOwn;
    std::shared_ptr<OGRLayer> m_selected;  // read in place of the layer: the same without what is not asked for
    std::string m_name, m_layerName;
    bool m_rawTexts;
    const TextDecoder& m_decoder;
    Report& m_report;
    OGRFeatureDefn* m_fields = nullptr;
    std::unique_ptr<OGRFeatureQuery> m_where;
    long long m_limit, m_taken = 0;
    bool m_isDatabase = false;
    bool m_toldText = false, m_toldEnd = false;
};

/// Opens the inputs and makes a reader for each layer that was asked for. The datasets are kept in kept; they must be
/// let go after the readers.
std::vector<std::unique_ptr<LayerReader>> OpenLayers(const std::vector<std::string>& inputs, const Selection& selection,
                                                     const TextDecoder& decoder, Report& report,
                                                     std::vector<OpenInput>& kept);

}  // namespace zm::tool
