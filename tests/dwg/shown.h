// What a picture of a drawing shows, as numbers in order.
#pragma once

#include <string>
#include <vector>

#include "dwg/reader/picture.h"

namespace zm::test {

class Shown : public dwg::reader::PictureSink {
    using Point = dwg::reader::Point;
    using Look = dwg::reader::Look;

 public:
    struct Item {
        char kind;  // s stroke, f fill, d dot, t text
        int color;
        std::string text;
        std::vector<Point> points;
        double height = 0.0;
        const dwg::reader::Linetype* linetype = nullptr;
    };
    void Stroke(const std::vector<Point>& points, const Look& look) override {
        items.push_back({'s', look.color, {}, points, 0.0, look.linetype});
    }
    void Fill(const std::vector<Point>& corners, const Look& look) override {
        items.push_back({'f', look.color, {}, corners, 0.0, look.linetype});
    }
    void Dot(const Point& at, const Look& look) override {
        items.push_back({'d', look.color, {}, {at}, 0.0, look.linetype});
    }
    void Text(const dwg::reader::TextItem& text, const Look& look) override {
        items.push_back({'t', look.color, text.text, {text.at}, text.height, look.linetype});
    }
    std::vector<Item> items;
};

inline std::vector<Shown::Item> ItemsOf(const dwg::reader::Drawing& drawing) {
    Shown shown;
    ShowPicture(drawing, shown);
    return shown.items;
}

}  // namespace zm::test
