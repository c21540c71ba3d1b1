// The items of a drawing or a recording as a window asks about them: in layers, with their vertices and texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zenro/map/shapes.h"
#include "tools/zenro/store/box_tree.h"
#include "tools/zenro/view/shown_map.h"
#include "zenromath/platform.h"

namespace zm::tool {

/// One stroke, fill, dot or text.
struct DrawnItem {
    const char* kind = "";  // "stroke", "fill", "dot", "text"
    std::uint32_t layer = 0;
    Chain points;
    std::string text;                                        // UTF-8
    std::vector<std::pair<std::string, std::string>> looks;  // what is known of its look, UTF-8
};

class DrawnItems {
 public:
    struct Layer {
        std::string name;  // UTF-8
        COLORREF colour = 0;
        double width = 0.0;  // millimetres
        long count = 0;
        bool hidden = false;
    };
    std::vector<Layer> layers;

    /// Adds an item; one without a place that can be shown has an empty box. \return its place
    std::size_t Add(DrawnItem item);
    /// Orders what was added by its place; needed before anything is asked.
    void Index() { m_tree = BoxTree(m_boxes); }
    /// The items that meet a window and are shown, in the order in which they were added.
    std::vector<std::uint32_t> Within(const Box& window) const;
    std::size_t size() const { return m_items.size(); }
    const DrawnItem& item(std::size_t i) const { return m_items[i]; }
    const Box& box(std::size_t i) const { return m_boxes[i]; }
    const Box& whole() const { return m_whole; }
    bool Shown(std::size_t i) const { return !m_leftOut[i] && !layers[m_items[i].layer].hidden; }

    Json Layers() const;
    Json Identify(double x, double y, double reach) const;
    Json Snap(double x, double y, double reach) const;
    Json Find(const std::string& text) const;
    void Hide(const std::vector<std::size_t>& hidden);
    std::string LeaveOut(std::uint64_t place);

 private:
    std::string NameOf(std::size_t i) const;

    std::vector<DrawnItem> m_items;
    std::vector<Box> m_boxes;
    std::vector<bool> m_leftOut;
    BoxTree m_tree;
    Box m_whole;
};

/// Length and area in the plane alone.
Json MeasureInPlane(const std::vector<double>& xy);

/// A map of such items; what is left to each kind is how it is drawn.
class DrawnMap : public ShownMap {
 public:
    Json Layers() override { return m_items.Layers(); }
    Json Identify(double x, double y, double reach) override { return m_items.Identify(x, y, reach); }
    Json Snap(double x, double y, double reach) override { return m_items.Snap(x, y, reach); }
    Json Where(double, double) override { return Json::object(); }
    Json Measure(const std::vector<double>& xy) override { return MeasureInPlane(xy); }
    Json Find(const std::string& text) override { return m_items.Find(text); }
    void Hide(const std::vector<std::size_t>& layers, const std::vector<std::size_t>&) override {
        m_items.Hide(layers);
    }
    std::string LeaveOut(std::uint64_t place) override { return m_items.LeaveOut(place); }

 protected:
    DrawnItems m_items;
};

/// The message "ready" of what has layers and no rules: its scale, its box, the file that is watched.
Json AboutDrawn(const DrawnItems& items, double scale, const std::string& file, const Box& start);

}  // namespace zm::tool
