// A map that was opened to be looked at: rules, symbols and all features, read once.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/store/feature_store.h"

namespace zm::tool {

class OpenedMap {
 public:
    /// Reads all. step is called for each feature with the number so far and all, -1 where that is not known. Throws
    /// Failure.
    OpenedMap(const DrawJob& job, Context& context, const std::function<void(long long, long long)>& step);

    DrawJob job;
    Rules rules;
    std::optional<NamedSheet> named;
    LibrarySession session;
    Source source;
    FeatureStore store;
    double scale = 0.0;        // denominator, of the sheet that the data would be drawn on
    Box start;                 // what is shown first, in the plane
    Box data;                  // of all features
    std::vector<bool> hidden;  // by place in the store

    /// The layers by their places in the list that are not shown; each other one is. The same for rules.
    void Hide(const std::vector<std::size_t>& layers, const std::vector<std::size_t>& rulesHidden);
    /// A feature that is never drawn again.
    void LeaveOut(std::size_t place);
    /// The files that the map is made of, as far as they are files.
    std::vector<std::string> Files() const;
    /// The symbol library that the map draws with.
    std::string SymbolFile() const;

    /// A position in degrees; false where the plane is of no known system.
    bool ToDegrees(double x, double y, double& latitude, double& longitude) const;

 private:
    std::vector<bool> m_leftOut;
    std::vector<bool> m_skipped;  // rules that say so themselves
};

}  // namespace zm::tool
