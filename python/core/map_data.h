// What a map of Python's holds: features with the rule that each is drawn by.
#pragma once

#include <string>

#include "tools/zenro/store/feature_store.h"

namespace zm::python {

/// How features are drawn.
struct Look {
    tool::Rule rule;
    double angle = 0.0;  // radians, counter-clockwise from east
    bool hasHeight = false;
    double height = 0.0;  // metres
};

class MapData {
 public:
    /// Adds a feature of one shape. label: GBK, empty for none. Coordinates are finite numbers.
    void Add(const Look& look, tool::Shape shape, std::string label);
    std::size_t size() const { return m_store.size(); }
    const tool::Box& box() const { return m_store.box(); }
    /// All features, to be asked; the next Add ends that.
    tool::FeatureStore& Settled();

 private:
    tool::Rules m_rules;
    tool::FeatureStore m_store{m_rules};
    std::uint32_t m_layer = m_store.AddLayer("map");
};

}  // namespace zm::python
