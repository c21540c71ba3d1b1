#include "tools/zenro/map/explain.h"

#include "tools/kit/text.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

const char* NameOf(GeometryKind kind) {
    return Translated(kind == GeometryKind::point ? N_("point") : kind == GeometryKind::line ? N_("line") : N_("area"));
}

}  // namespace

std::string RuleText(const Rules& rules, const Rule& rule) {
    std::string text = rules.path.string() + ":" + std::to_string(rule.line) + ": ";
    text += (rule.condition.empty() ? "*" : rule.condition) + " -> ";
    if (rule.fromScale > 0.0 || rule.toScale > 0.0)
        text += Phrase("scales {0}-{1}, ", rule.fromScale > 0.0 ? Fixed(rule.fromScale, 0) : std::string(),
                       rule.toScale > 0.0 ? Fixed(rule.toScale, 0) : std::string());
    if (rule.skip) return text + "skip";
    if (rule.OnlyStorey()) {
        const std::string storey = rule.storeyField.empty() ? std::to_string(rule.storey) : rule.storeyField;
        return text + Phrase("storey {0} for the rules below", storey);
    }
    text += Phrase("symbol {0}, layer {1}", rule.symbol, rule.layer);
    if (rule.outline != 0) text += Phrase(", outline {0}", rule.outline);
    if (!rule.label.empty()) text += Phrase(", note {0}", rule.note);
    return text;
}

std::vector<std::string> Explain(FeatureStore& store, const Rules& rules, const std::string& id) {
    std::vector<std::string> lines;
    const std::string end = Phrase(": feature {0}", id);
    store.ForEach({}, [&](const Feature& feature) {
        const std::string& where = feature.where;
        if (where.size() < end.size() || where.compare(where.size() - end.size(), end.size(), end) != 0) return;
        GeometryKind last = GeometryKind::any;
        for (const Shape& shape : feature.shapes) {
            if (shape.kind == last) continue;
            last = shape.kind;
            const auto uses = UsesOf(feature, shape.kind);
            if (uses.empty()) lines.push_back(Phrase("{0}, {1}: no rule draws it.", where, NameOf(shape.kind)));
            for (const Use* use : uses)
                lines.push_back(Phrase("{0}, {1}: {2}", where, NameOf(shape.kind), RuleText(rules, *use->rule)) +
                                (use->label.empty() ? std::string() : Phrase(", with a label")));
        }
    });
    return lines;
}

std::map<const Rule*, RuleCount> CountRules(FeatureStore& store) {
    std::map<const Rule*, RuleCount> counts;
    store.ForEach({}, [&](const Feature& feature) {
        for (const Shape& shape : feature.shapes)
            for (const Use* use : UsesOf(feature, shape.kind)) {
                RuleCount& count = counts[use->rule];
                ++(shape.kind == GeometryKind::point  ? count.points
                   : shape.kind == GeometryKind::line ? count.lines
                                                      : count.areas);
            }
    });
    return counts;
}

}  // namespace zm::tool
