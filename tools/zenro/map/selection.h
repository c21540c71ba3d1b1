// Which part of map data is taken.
#pragma once

#include <string>
#include <vector>

namespace zm::tool {

/// Layers and features that are taken.
struct Selection {
    std::vector<std::string> layers;  // names with * and ?; empty: all
    std::string where;                // attribute filter; empty: every feature
    std::string sql;                  // a statement whose result is the only layer of each input
    long long limit = -1;             // features of each layer at most; -1: all
};

}  // namespace zm::tool
