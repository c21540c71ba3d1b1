// The feature store: order, index, memory and file.
#include "tools/zenro/store/feature_store.h"

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tools/zenro/store/box_tree.h"

namespace {

using namespace zm::tool;

Rules TwoRules() {
    return ParseRules(
        "[* : any]\nkind = 'a' -> layer 100, symbol 17, label name\n* -> layer 250, symbol 250, level 7\n", "r");
}

Feature Line(double x, double y, const Rule& rule, const std::string& label) {
    Feature f;
    f.where = "here";
    f.shapes = {{GeometryKind::line, {{{x, x + 1, x + 2}, {y, y + 3, y}}}},
                {GeometryKind::area, {{{x, x + 1, x + 1, x}, {y, y, y + 1, y}}, {{x, x, x, x}, {y, y, y, y}}}}};
    f.uses.push_back({&rule, label, "", 0.5, 7.25, true, "s7", 4.5, -1});
    return f;
}

TEST(BoxTree, FindsWhatALookAtAllFinds) {
    zm::test::Random random;
    for (const int count : {0, 1, 15, 16, 17, 300, 5000}) {
        std::vector<Box> boxes;
        for (int i = 0; i < count; ++i) {
            if (i % 50 == 7) {
                boxes.emplace_back();  // a feature without a place
                continue;
            }
            const double x = random.Real(-1e5, 1e5), y = random.Real(-1e5, 1e5);
            boxes.push_back({x, y, x + random.Real(0, 2e3), y + random.Real(0, 2e3)});
        }
        const BoxTree tree(boxes);
        for (int k = 0; k < 50; ++k) {
            const double x = random.Real(-1e5, 1e5), y = random.Real(-1e5, 1e5);
            const Box window{x, y, x + random.Real(0, 3e4), y + random.Real(0, 3e4)};
            std::vector<std::uint32_t> expected;
            for (std::uint32_t i = 0; i < boxes.size(); ++i)
                if (boxes[i].Meets(window)) expected.push_back(i);
            EXPECT_EQ(tree.Within(window), expected);
        }
    }
}

TEST(FeatureStore, GivesBackWhatItWasGivenInTheOrderOfNumbers) {
    const Rules rules = TwoRules();
    for (const std::size_t memory : {std::size_t{1} << 20, std::size_t{0}, std::size_t{5000}}) {
        FeatureStore store(rules, memory);
        const auto first = store.AddLayer("f: one"), second = store.AddLayer("f: two");
        for (int i = 0; i < 300; ++i) {
            const int fid = (i * 7) % 300;
            store.Add(i % 2 == 0 ? second : first, fid,
                      Line(fid, -fid, rules.rules[fid % 2], "n" + std::to_string(fid)));
        }
        store.Settle();
        ASSERT_EQ(store.size(), 300u);
        std::uint32_t layer = 0;
        std::int64_t last = -1;
        for (std::size_t i = 0; i < store.size(); ++i) {
            const auto& entry = store.entry(i);
            if (entry.layer != layer) last = -1;
            EXPECT_GE(entry.layer, layer);
            EXPECT_GT(entry.fid, last);
            layer = entry.layer;
            last = entry.fid;
            Feature f;
            store.Read(i, f);
            const double d = static_cast<double>(entry.fid);
            EXPECT_EQ(f.where, store.layerName(layer) + ": feature " + std::to_string(entry.fid));
            ASSERT_EQ(f.shapes.size(), 2u);
            EXPECT_EQ(f.shapes[0].chains[0].x, (std::vector<double>{d, d + 1, d + 2}));
            EXPECT_EQ(f.shapes[1].kind, GeometryKind::area);
            EXPECT_EQ(f.shapes[1].chains.size(), 2u);
            ASSERT_EQ(f.uses.size(), 1u);
            EXPECT_EQ(f.uses[0].rule, &rules.rules[static_cast<std::size_t>(entry.fid) % 2]);
            EXPECT_EQ(f.uses[0].label, "n" + std::to_string(entry.fid));
            EXPECT_EQ(f.uses[0].height, 7.25);
            EXPECT_TRUE(f.uses[0].hasHeight);
            EXPECT_EQ(f.uses[0].slope, "s7");
            EXPECT_EQ(f.uses[0].roadWidth, 4.5);
            EXPECT_EQ(f.uses[0].storey, -1);
        }
    }
}

TEST(FeatureStore, PassesOverWhatIsNotAskedFor) {
    const Rules rules = TwoRules();
    FeatureStore store(rules);
    const auto layer = store.AddLayer("f: one");
    for (int i = 0; i < 10; ++i) store.Add(layer, i, Line(100.0 * i, 0, rules.rules[i % 2], i == 4 ? "x" : ""));
    store.Settle();
    const auto count = [&](const StoreFilter& filter) {
        int found = 0;
        store.ForEach(filter, [&](const Feature&) { ++found; });
        return found;
    };
    EXPECT_EQ(count({}), 10);
    StoreFilter level, labelled, window;
    level.levels = 1u << 7;
    labelled.labelledKinds = 1u << static_cast<unsigned>(GeometryKind::line);
    window.window = {150, -1, 310, 1};
    EXPECT_EQ(count(level), 5);
    EXPECT_EQ(count(labelled), 1);
    EXPECT_EQ(count(window), 2);
}

TEST(FeatureStore, FeaturesWithoutLastingNumbersComeInTheOrderOfWhatTheyAre) {
    const Rules rules = TwoRules();
    std::vector<std::string> orders;
    for (const bool backwards : {false, true}) {
        FeatureStore store(rules);
        const auto layer = store.AddLayer("view", false);
        for (int i = 0; i < 20; ++i) {
            const int k = backwards ? 19 - i : i;
            store.Add(layer, i, Line(k % 5, k % 3, rules.rules[0], std::string(1, static_cast<char>('a' + k))));
        }
        store.Settle();
        std::string order;
        store.ForEach({}, [&](const Feature& f) { order += f.uses[0].label; });
        orders.push_back(order);
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(Touches, GoesByTheShapeAndNotByItsBox) {
    const Box box{0, 0, 10, 10};
    const Shape corner{GeometryKind::line, {{{-5, -5, 20}, {-5, 20, 20}}}};  // around the box
    EXPECT_FALSE(Touches(corner, box));
    EXPECT_TRUE(Touches({GeometryKind::line, {{{-5, 15}, {5, 5}}}}, box));  // through it
    EXPECT_TRUE(Touches({GeometryKind::line, {{{-5, 0}, {0, 0}}}}, box));   // its corner
    const Chain around{{-5, 15, 15, -5, -5}, {-5, -5, 15, 15, -5}};
    EXPECT_TRUE(Touches({GeometryKind::area, {around}}, box));
    EXPECT_FALSE(Touches({GeometryKind::line, {around}}, box));
    const Chain hole{{-1, 11, 11, -1, -1}, {-1, -1, 11, 11, -1}};
    EXPECT_FALSE(Touches({GeometryKind::area, {around, hole}}, box));
    EXPECT_TRUE(Touches({GeometryKind::point, {{{10}, {10}}}}, box));
    EXPECT_FALSE(Touches({GeometryKind::point, {{{10.1}, {10}}}}, box));
}

}  // namespace
