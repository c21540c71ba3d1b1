// zenro rules check: what a rules file does with data, without drawing it.
#include <cstdio>
#include <memory>

#include <nlohmann/json.hpp>

#include "runtime/text/numbers.h"
#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/map/explain.h"

namespace zm::tool {
namespace {

struct RulesOptions {
    std::string rules;
    double scale = 0.0;  // denominator; 0: rules of all scales are asked
    SourceOptions source;
};

void Check(RulesOptions options, Context& context) {
    const Rules rules = ReadRules(PathOf(FindRules(options.rules)));
    options.source.plane.datum = "keep";  // only the features count here
    Source source(options.source, rules, context.report);
    source.UseRulesFor(options.scale);
    FeatureStore store(rules);
    source.Read({}, store);
    const auto counts = CountRules(store);
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    if (!context.json) std::printf("# points lines areas rule\n");
    for (const Rule& rule : rules.rules) {
        const auto found = counts.find(&rule);
        const RuleCount count = found != counts.end() ? found->second : RuleCount{};
        if (context.json)
            all.push_back({{"line", rule.line},
                           {"condition", rule.condition},
                           {"points", count.points},
                           {"lines", count.lines},
                           {"areas", count.areas}});
        else
            WriteLine(numbers::Text("%8ld %8ld %8ld ", count.points, count.lines, count.areas) + RuleText(rules, rule));
    }
    if (context.json) {
        const nlohmann::ordered_json result = {{"rules", all}, {"reports", context.report.kinds()}};
        WriteLine(result.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
    }
    context.status = context.report.status();
}

}  // namespace

void AddRulesVerb(Verb app, Context& context) {
    const Verb rules = app.AddVerb("rules", "Check rules files against data");
    rules.NeedsVerb();
    const auto options = std::make_shared<RulesOptions>();
    const Verb check = rules.AddVerb("check", "How many shapes each rule takes, and what none takes");
    check.AddOption("RULES", options->rules, "Rules file, or the name of one of the default data").Required();
    check.AddOption("IN", options->source.inputs, "Map data").Required();
    check.AddOption("--scale", options->scale, "Only rules for this scale; its denominator").Within(10.0, 1e8);
    check.AddOption("--encoding", options->source.encoding, "Encoding of attributes");
    check.AddOption("--source", options->source.plane.source, "System of the data, in place of what it says itself");
    check
        .AddOption("--axes", options->source.plane.axes,
                   "Which number of the data comes first, whatever its system says")
        .OneOf({"east,north", "north,east"});
    AddCommonOptions(check, context);
    check.OnRun([options, &context] { Check(*options, context); });
}

}  // namespace zm::tool
