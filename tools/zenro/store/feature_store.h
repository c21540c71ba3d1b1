// The features of a drawing, read once: kept in drawing order with their boxes, levels and kinds, found by place.
//
// A store is filled, then settled, then asked. What it holds of each feature beside its bytes is one Entry, so that a
// reader can pass over what it does not want without touching the bytes. The bytes lie in memory, beyond a limit in a
// temporary file. A process that was forked off may read the store that it has inherited.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/zenro/store/box_tree.h"
#include "tools/zenro/store/byte_store.h"
#include "tools/zenro/store/feature.h"

namespace zm::tool {

class Digest;

/// What readers ask for; a field that is empty asks for nothing.
struct StoreFilter {
    unsigned levels = 0;                             // bits 1 << level
    unsigned labelledKinds = 0;                      // bits 1 << kind: a shape of this kind carries a label
    Box window;                                      // in the plane
    const std::vector<bool>* hidden = nullptr;       // by place: what is passed over
    std::function<void(std::size_t place)> visited;  // called before a feature is handed on
};

class FeatureStore {
 public:
    struct Entry {
        Box box;               // of all shapes
        std::int64_t fid = 0;  // of the feature in its layer, to read it there again
        std::uint64_t at = 0;
        std::uint32_t size = 0;
        std::uint32_t layer = 0;
        std::uint16_t levels = 0;        // bits 1 << level of the rules that draw it
        std::uint8_t kinds = 0;          // bits 1 << kind of its shapes
        std::uint8_t labelledKinds = 0;  // bits 1 << kind of its shapes with a label
    };
    static constexpr std::size_t kMemory = 64u << 20;  // bytes of features before the file

    /// The rules must outlast the store.
    explicit FeatureStore(const Rules& rules, std::size_t memoryLimit = kMemory);

    /// A layer by its name for reports. Layers come in the order in which they are drawn. orderKnown: features have
    /// lasting numbers; else they are put in order by what they are.
    std::uint32_t AddLayer(const std::string& name, bool orderKnown = true);
    /// Adds a feature of a layer. Throws Failure where no more can be kept.
    void Add(std::uint32_t layer, std::int64_t fid, const Feature& feature);
    /// Puts all in drawing order: by layer, then by number, whatever the order in which they came.
    void Settle();

    std::size_t size() const { return m_entries.size(); }
    const Entry& entry(std::size_t i) const { return m_entries[i]; }
    const std::string& layerName(std::uint32_t layer) const { return m_layers[layer].name; }
    const Box& box() const { return m_box; }
    /// The feature at a place of the drawing order.
    void Read(std::size_t i, Feature& feature);
    /// Builds the index of places, once. Before a fork, so that no process builds its own.
    void Index();
    /// The places of the features whose boxes meet a window, in drawing order. Builds the index where there is none.
    std::vector<std::uint32_t> Within(const Box& window);
    /// Calls work for each feature that fits, in drawing order. Throws Stopped after Ctrl-C.
    void ForEach(const StoreFilter& filter, const std::function<void(const Feature&)>& work);

    /// Adds all features to a digest: their places, rules and texts; equal for equal content.
    void AddTo(Digest& digest);

 private:
    struct Layer {
        std::string name;
        bool orderKnown;
    };
    bool Before(const Entry& a, const Entry& b);

    const Rules& m_rules;
    std::vector<Layer> m_layers;
    std::vector<Entry> m_entries;
    ByteStore m_bytes;
    Box m_box;
    std::unique_ptr<BoxTree> m_tree;
    std::string m_room;
};

}  // namespace zm::tool
