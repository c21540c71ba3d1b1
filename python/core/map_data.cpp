#include "python/core/map_data.h"

#include <utility>

namespace zm::python {
namespace {

bool SameLook(const tool::Rule& a, const tool::Rule& b) {
    return a.layer == b.layer && a.symbol == b.symbol && a.lineType == b.lineType && a.outline == b.outline &&
           a.penStyle == b.penStyle && a.penValue == b.penValue && a.note == b.note && a.place == b.place &&
           a.level == b.level;
}

}  // namespace

// The store keeps the number of a rule, not its address. Features that come one after the other have mostly the same.
void MapData::Add(const Look& look, tool::Shape shape, std::string label) {
    if (m_rules.rules.empty() || !SameLook(m_rules.rules.back(), look.rule)) m_rules.rules.push_back(look.rule);
    tool::Use use;
    use.rule = &m_rules.rules.back();
    use.label = std::move(label);
    use.angle = look.angle;
    use.hasHeight = look.hasHeight;
    use.height = look.height;
    tool::Feature feature;
    feature.where = "feature " + std::to_string(size());
    feature.shapes.push_back(std::move(shape));
    feature.uses.push_back(std::move(use));
    m_store.Add(m_layer, static_cast<std::int64_t>(size()), feature);
}

tool::FeatureStore& MapData::Settled() {
    m_store.Settle();
    return m_store;
}

}  // namespace zm::python
