// Writes a data set like one that was read: the same layers, fields, names and attributes.
#pragma once

#include <string>
#include <vector>

#include "tools/zenro/map/dataset.h"
#include "tools/zenro/map/output_dataset.h"

namespace zm::tool {

class DatasetCopy {
 public:
    /// \param output  its extension says the format. Throws Failure: kUsage for an unknown one, kNoOutput.
    DatasetCopy(const std::string& output, bool overwrite, Report& report);

    /// A layer with the fields of the one that is read, and real numbers in further fields.
    OGRLayer& AddLayer(LayerReader& reader, const OGRSpatialReference* system,
                       const std::vector<std::string>& further = {});
    /// A feature of the layer with the attributes and the geometry of another one; not yet written.
    FeaturePointer Copy(OGRLayer& layer, OGRFeature& feature) const;
    void Write(OGRLayer& layer, OGRFeature& feature);
    long written() const { return m_written; }
    /// Puts the whole in its place, as OutputDataset does.
    void Finish();

 private:
    std::string m_output;
    Report& m_report;
    OutputDataset m_out;
    long m_written = 0;
};

}  // namespace zm::tool
