// A new data set in the format that its name's extension says, made apart and put in its place when it is whole.
#pragma once

#include <filesystem>
#include <string>

#include "tools/kit/output_file.h"
#include "tools/zenro/map/dataset.h"

namespace zm::tool {

class DriverFault;

class OutputDataset {
 public:
    /// Throws Failure: kUsage for an extension that no writing driver has, kNoOutput.
    OutputDataset(const std::string& output, bool overwrite);

    GDALDataset& dataset() { return *m_dataset; }
    /// Throws Failure (kNoOutput), as the next one.
    void Write(OGRLayer& layer, OGRFeature& feature);
    OGRLayer& AddLayer(const std::string& name, const OGRSpatialReference* system, OGRwkbGeometryType type);
    [[noreturn]] void CannotWrite() const;
    /// Closes the data set and puts it in its place. Of a format of several files each is put there whole, the named one
    /// last; such a format is refused for standard output.
    void Finish();

 private:
    void RequireNone(const DriverFault& fault) const;

    std::string m_output;
    bool m_overwrite;
    OutputFile m_out;
    PrivateFolder m_folder;  // drivers make their files themselves
    std::filesystem::path m_made;
    Dataset m_dataset;
};

}  // namespace zm::tool
