#include "tools/zenro/map/output_dataset.h"

#include <gdal_priv.h>

#include <algorithm>
#include <vector>

#include "tools/kit/exit_codes.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/watched_files.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

GDALDriver& DriverFor(const std::string& output) {
    GDALAllRegister();
    std::string extension = fs::path(output).extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    GDALDriverManager& all = *GetGDALDriverManager();
    for (int i = 0; !extension.empty() && i < all.GetDriverCount(); ++i) {
        GDALDriver& driver = *all.GetDriver(i);
        if (driver.GetMetadataItem(GDAL_DCAP_VECTOR) == nullptr || driver.GetMetadataItem(GDAL_DCAP_CREATE) == nullptr)
            continue;
        const char* extensions = driver.GetMetadataItem(GDAL_DMD_EXTENSIONS);
        const CPLStringList own(CSLTokenizeString(extensions != nullptr ? extensions : ""));
        if (own.FindString(extension.c_str()) >= 0) return driver;
    }
    throw Failure(kUsage, Phrase("{0}: no format for map data has this extension; use .gpkg or .geojson.", output));
}

// Drivers that look at each of their writes themselves and need files of the system: SQLite for its locks, FlatGeobuf to
// remove the file that it works in.
bool WatchesItself(GDALDriver& driver) {
    const std::string name = driver.GetDescription();
    return name == "GPKG" || name == "SQLite" || name == "FlatGeobuf";
}

}  // namespace

OutputDataset::OutputDataset(const std::string& output, bool overwrite)
    : m_output(output), m_overwrite(overwrite), m_out((DriverFor(output), output), overwrite) {
    m_made = m_folder.path() / fs::path(output).filename();
    GDALDriver& driver = DriverFor(output);
    const std::string name = WatchesItself(driver) ? m_made.string() : WatchedName(m_made);
    ForgetFault();
    const DriverFault fault;
    m_dataset.reset(driver.Create(name.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (m_dataset == nullptr) CannotWrite();
    RequireNone(fault);
}

void OutputDataset::RequireNone(const DriverFault& fault) const {
    if (fault.words().empty() && WriteFault().empty()) return;
    CPLErrorSetState(CE_Failure, CPLE_AppDefined, fault.words().c_str());  // the first reason, not the last
    CannotWrite();
}

void OutputDataset::CannotWrite() const {
    const std::string fault = WriteFault();
    throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", m_output, fault.empty() ? LastReason() : fault));
}

OGRLayer& OutputDataset::AddLayer(const std::string& name, const OGRSpatialReference* system, OGRwkbGeometryType type) {
    const DriverFault fault;
    OGRLayer* layer = m_dataset->CreateLayer(name.c_str(), const_cast<OGRSpatialReference*>(system), type, nullptr);
    if (layer == nullptr) CannotWrite();
    RequireNone(fault);
    return *layer;
}

void OutputDataset::Write(OGRLayer& layer, OGRFeature& feature) {
    const DriverFault fault;
    if (layer.CreateFeature(&feature) != OGRERR_NONE) CannotWrite();
    RequireNone(fault);
}

void OutputDataset::Finish() {
    {
        const DriverFault fault;
        m_dataset.reset();
        RequireNone(fault);
    }
    std::error_code error;
    std::vector<fs::path> others;
    for (const auto& file : fs::directory_iterator(m_folder.path()))
        if (file.path() != m_made) others.push_back(file.path());
    if (!fs::is_regular_file(m_made, error) || (!others.empty() && IsStandardOutput(m_output)))
        throw Failure(kUsage, Phrase("{0}: this format is one of several files; use .gpkg or .geojson.", m_output));
    std::sort(others.begin(), others.end());
    const auto copy = [&](const fs::path& from, OutputFile& to) {
        fs::copy_file(from, to.path(), fs::copy_options::overwrite_existing, error);
        if (error)
            throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", to.target().string(), error.message()));
        to.Commit();
    };
    for (const fs::path& other : others) {
        OutputFile beside(fs::path(m_output).replace_filename(other.filename()), m_overwrite);
        copy(other, beside);
    }
    copy(m_made, m_out);
}

}  // namespace zm::tool
