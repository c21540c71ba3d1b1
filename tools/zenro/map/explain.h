// Which rule draws a feature with which symbol, for people who write rules.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/zenro/map/rules.h"
#include "tools/zenro/store/feature_store.h"

namespace zm::tool {

/// "r.rules:3: class = 'a' -> symbol 250, layer 250, note D".
std::string RuleText(const Rules& rules, const Rule& rule);

/// One line for each rule that draws a feature of this number in any layer.
std::vector<std::string> Explain(FeatureStore& store, const Rules& rules, const std::string& id);

/// How many shapes each rule takes, by kind of geometry; what a rule skips on purpose counts too.
struct RuleCount {
    long points = 0, lines = 0, areas = 0;
};
std::map<const Rule*, RuleCount> CountRules(FeatureStore& store);

}  // namespace zm::tool
