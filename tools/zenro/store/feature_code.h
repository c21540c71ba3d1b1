// Features as bytes: what a store holds of them.
#pragma once

#include <string>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

/// The bytes of a feature, without its name. Rules are written as their places in the list.
void Encode(const Feature& feature, const std::vector<Rule>& rules, std::string& bytes);
/// The feature of such bytes. The bytes are the store's own: nothing in them is doubted.
void Decode(const char* bytes, const std::vector<Rule>& rules, Feature& feature);

}  // namespace zm::tool
