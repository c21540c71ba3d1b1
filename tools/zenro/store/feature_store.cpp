#include "tools/zenro/store/feature_store.h"

#include <algorithm>
#include <tuple>

#include "tools/kit/digest.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/store/feature_code.h"

namespace zm::tool {
namespace {

constexpr std::size_t kMostBytes = 0xFFFFFFFFu;  // of one feature

unsigned Bit(GeometryKind kind) {
    return 1u << static_cast<unsigned>(kind);
}

bool Fits(const FeatureStore::Entry& entry, const StoreFilter& filter) {
    return (filter.levels == 0 || (entry.levels & filter.levels) != 0) &&
           (filter.labelledKinds == 0 || (entry.labelledKinds & filter.labelledKinds) != 0);
}

}  // namespace

FeatureStore::FeatureStore(const Rules& rules, std::size_t memoryLimit) : m_rules(rules), m_bytes(memoryLimit) {}

std::uint32_t FeatureStore::AddLayer(const std::string& name, bool orderKnown) {
    m_layers.push_back({name, orderKnown});
    return static_cast<std::uint32_t>(m_layers.size() - 1);
}

void FeatureStore::Add(std::uint32_t layer, std::int64_t fid, const Feature& feature) {
    Entry entry;
    entry.layer = layer;
    entry.fid = fid;
    for (const Shape& shape : feature.shapes) {
        for (const Chain& chain : shape.chains) entry.box.Add(BoxOf(chain));
        entry.kinds = static_cast<std::uint8_t>(entry.kinds | Bit(shape.kind));
        for (const Use* use : UsesOf(feature, shape.kind)) {
            entry.levels = static_cast<std::uint16_t>(entry.levels | 1u << use->rule->LevelOf(shape.kind));
            if (!use->label.empty())
                entry.labelledKinds = static_cast<std::uint8_t>(entry.labelledKinds | Bit(shape.kind));
        }
    }
    m_room.clear();
    Encode(feature, m_rules.rules, m_room);
    if (m_room.size() > kMostBytes)
        throw Failure(kFailed, Phrase("{0}: is larger than 4 GB; divide it.", feature.where));
    entry.size = static_cast<std::uint32_t>(m_room.size());
    entry.at = m_bytes.Add(m_room);
    m_box.Add(entry.box);
    m_entries.push_back(entry);
}

bool FeatureStore::Before(const Entry& a, const Entry& b) {
    if (a.layer != b.layer) return a.layer < b.layer;
    if (m_layers[a.layer].orderKnown) return a.fid < b.fid;
    const auto sides = [](const Entry& e) { return std::tie(e.box.y1, e.box.x1, e.box.y2, e.box.x2, e.size); };
    if (sides(a) != sides(b)) return sides(a) < sides(b);
    const std::string first(m_bytes.Read(a.at, a.size), a.size);
    return first.compare(0, a.size, m_bytes.Read(b.at, b.size), b.size) < 0;
}

void FeatureStore::Settle() {
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [this](const Entry& a, const Entry& b) { return Before(a, b); });
}

void FeatureStore::Read(std::size_t i, Feature& feature) {
    const Entry& entry = m_entries[i];
    feature.where = Phrase("{0}: feature {1}", m_layers[entry.layer].name, entry.fid);
    Decode(m_bytes.Read(entry.at, entry.size), m_rules.rules, feature);
}

void FeatureStore::Index() {
    if (m_tree != nullptr) return;
    std::vector<Box> boxes;
    boxes.reserve(m_entries.size());
    for (const Entry& entry : m_entries) boxes.push_back(entry.box);
    m_tree = std::make_unique<BoxTree>(boxes);
}

std::vector<std::uint32_t> FeatureStore::Within(const Box& window) {
    Index();
    return m_tree->Within(window);
}

void FeatureStore::ForEach(const StoreFilter& filter, const std::function<void(const Feature&)>& work) {
    Feature feature;
    const auto visit = [&](std::size_t i) {
        CheckStop();
        if (!Fits(m_entries[i], filter) || (filter.hidden != nullptr && (*filter.hidden)[i])) return;
        if (filter.visited) filter.visited(i);
        Read(i, feature);
        work(feature);
    };
    if (!filter.window.empty()) {
        for (const std::uint32_t i : Within(filter.window)) visit(i);
    } else {
        for (std::size_t i = 0; i < m_entries.size(); ++i) visit(i);
    }
}

void FeatureStore::AddTo(Digest& digest) {
    for (const Entry& entry : m_entries) {
        digest.AddText(m_layers[entry.layer].name);
        digest.AddText({m_bytes.Read(entry.at, entry.size), entry.size});
    }
}

}  // namespace zm::tool
