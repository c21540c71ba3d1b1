#include "tools/zenro/map/dataset_copy.h"
#include "tools/kit/translation.h"

namespace zm::tool {

DatasetCopy::DatasetCopy(const std::string& output, bool overwrite, Report& report)
    : m_output(output), m_report(report), m_out(output, overwrite) {}

OGRLayer& DatasetCopy::AddLayer(LayerReader& reader, const OGRSpatialReference* system,
                                const std::vector<std::string>& further) {
    const OGRFeatureDefn& fields = reader.fields();
    OGRLayer* layer = &m_out.AddLayer(reader.layerName(), system, reader.geometryType());
    for (int i = 0; i < fields.GetFieldCount(); ++i) {
        const OGRFieldDefn* field = fields.GetFieldDefn(i);
        const int before = layer->GetLayerDefn()->GetFieldCount();
        if (layer->CreateField(const_cast<OGRFieldDefn*>(field)) != OGRERR_NONE ||
            layer->GetLayerDefn()->GetFieldCount() == before) {
            m_report.Skip(N_("fields that the format lacks"), Phrase("{0}: the field \"{1}\" is left out: {2}.",
                                                                     reader.name(), field->GetNameRef(), LastReason()));
            continue;
        }
        const std::string now = layer->GetLayerDefn()->GetFieldDefn(before)->GetNameRef();
        if (now != field->GetNameRef())
            m_report.Warn(N_("fields with another name"),
                          Phrase("{0}: the format has \"{1}\" as \"{2}\".", reader.name(), field->GetNameRef(), now));
    }
    for (const std::string& name : further) {
        OGRFieldDefn field(name.c_str(), OFTReal);
        if (fields.GetFieldIndex(name.c_str()) < 0 && layer->CreateField(&field) != OGRERR_NONE)
            throw Failure(kNoOutput,
                          Phrase("{0}: the field \"{1}\" cannot be made: {2}.", reader.name(), name, LastReason()));
    }
    return *layer;
}

FeaturePointer DatasetCopy::Copy(OGRLayer& layer, OGRFeature& feature) const {
    FeaturePointer copy(OGRFeature::CreateFeature(layer.GetLayerDefn()));
    copy->SetFrom(&feature, TRUE);
    return copy;
}

void DatasetCopy::Write(OGRLayer& layer, OGRFeature& feature) {
    m_out.Write(layer, feature);
    ++m_written;
}

void DatasetCopy::Finish() {
    m_out.Finish();
}

}  // namespace zm::tool
