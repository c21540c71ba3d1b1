// Features from anything GDAL/OGR reads, taken to the plane and matched with the rules.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/zenro/map/plane.h"
#include "tools/zenro/map/rules.h"
#include "tools/zenro/map/selection.h"
#include "tools/zenro/store/feature_store.h"

class OGRFeature;

namespace zm::tool {

struct SourceOptions {
    std::vector<std::string> inputs;
    Selection selection;
    std::string encoding;    // of attributes, where the data names none or a wrong one
    char replacement = '?';  // for characters that GBK lacks
    PlaneOptions plane;
    bool windowed = false;  // a sheet is all that will be asked for: no extent is read where the plane follows from it
};

/// What of the plane is asked for: a sheet, turned about its middle, and what its symbols and labels may reach.
struct Window {
    Box sheet;              // as it is drawn
    double rotation = 0.0;  // degrees, counter-clockwise, from the plane to the drawing
    double reach = 0.0;     // metres around the sheet
    /// The outline in the plane, closed, with points between the corners.
    Chain Outline() const;
};

/// All inputs of a drawing.
class Source {
 public:
    /// Opens the inputs and reads the extents. Throws Failure (kNoInput) where one cannot be read or its numbers are no
    /// places of its system, kUsage where a rule does not fit the data. The plane is for a scale of 1:1000 at first.
    Source(const SourceOptions& options, const Rules& rules, Report& report);
    ~Source();
    /// Brings all to the plane for a scale. Throws Failure (kNoInput) where no change of datum is right for the data.
    void Settle(double scale);
    /// From now on rules for other scales take nothing, as if they were not there; 0, as at first: all rules are asked.
    void UseRulesFor(double scale) { m_scale = scale; }
    /// Reports how the layers came to the plane. Once, after the last Settle.
    void TellPlane();
    const TargetPlane& plane() const;
    /// The box of all data in the plane without what strays; of layers that were not looked at what their sources know
    /// without a look, or what was read of them, which may be nothing. Empty where there is none.
    Box DataBox() const;
    /// The number of features, -1 where the data does not say it. A database counts its rows for it.
    long long Count() const;
    /// How many features were taken from the inputs so far, for extents and for the store.
    long long taken() const { return m_looked + m_read; }

    /// Reads each feature that a rule draws into the store: those that meet the window by the sources' own indexes,
    /// without one all. Fields that no rule uses are not asked for. Reports are of what meets the sheet. The store is
    /// settled at the end. step is called for each feature with the number so far.
    void Read(const std::optional<Window>& window, FeatureStore& store,
              const std::function<void(long long)>& step = {});
    /// How many features of layers with rules meet each box of the plane, by the sources' indexes or one look at all:
    /// boxes against boxes, for estimates. With a field, those that have a value there which is least or more. Throws Failure
    /// (kUsage) where no layer has the field, or one of them cannot compare it.
    std::vector<long long> CountIn(const std::vector<Box>& boxes, const std::string& field = {},
                                   const std::string& least = {});
    /// Names and values of the fields of a feature that was read, in UTF-8, as far as they have values; nothing where
    /// the source cannot find it by its number. layer: the name that the store has it under.
    std::vector<std::pair<std::string, std::string>> FieldsOf(const std::string& layer, long long fid);
    /// The files that the inputs are read from, as far as they are files of their own: those beside a Shapefile too, and
    /// the log in which a database keeps what was written last, be it there or not.
    std::vector<std::string> Files() const;
    /// The outer ring of the first area in a file, in the plane and open, for --clip.
    Chain ReadClipArea(const std::string& file);

 private:
    struct Layer;
    struct State;
    void Open();
    void BindRules(Layer& layer);
    void TellUnboundRules();
    void ReadExtent(Layer& layer);
    void ReadLayer(Layer& layer, const std::optional<Window>& window, FeatureStore& store,
                   const std::function<void(long long)>& step);
    bool Prepare(Layer& layer, OGRFeature& feature, const std::optional<Window>& window, Feature& prepared);
    bool TakeShapes(OGRFeature& feature, const std::optional<Window>& window, Feature& prepared);
    bool MapShapes(const Layer& layer, const std::optional<Window>& window, bool tell, Feature& prepared);
    struct Damage {
        std::vector<std::string> reported;  // of each vertex that was left out
        Chain sound;                        // the other vertices of the same chains
    };
    static void LeaveStraysOut(const Layer& layer, Feature& prepared, Damage& damage);

    SourceOptions m_options;
    const Rules& m_rules;
    Report& m_report;
    std::unique_ptr<State> m_state;
    Box m_box;
    double m_scale = 0.0;  // of the drawing; 0: none
    long long m_looked = 0, m_read = 0;
    std::size_t m_kept = 0;  // bytes of the features that the look at the extents kept
};

}  // namespace zm::tool
