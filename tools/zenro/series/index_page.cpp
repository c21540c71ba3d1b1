#include "tools/zenro/series/index_page.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include <nlohmann/json.hpp>

#include "runtime/text/markup.h"
#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/zenro/series/record.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr double kPicture = 900.0;  // pixels of the longer side

const char* ColourOf(SheetState state) {
    switch (state) {
        case SheetState::done:
            return "#7fb77e";
        case SheetState::partly:
            return "#f0c808";
        case SheetState::empty:
            return "#dfe3e6";
        case SheetState::failed:
            return "#d64933";
        default:
            return "#ffffff";
    }
}

// The files of a sheet, relative to the page.
std::vector<std::string> LinksOf(const PlanSheet& sheet, const std::string& base, const std::string& folder) {
    std::vector<std::string> links;
    for (const SheetFile& file : FilesIn(sheet.files)) {
        fs::path path = file.path;
        if (path.is_relative()) path = fs::path(base) / path;
        links.push_back(path.lexically_normal().lexically_relative(fs::absolute(folder).lexically_normal()).string());
    }
    return links;
}

std::string UrlOf(const std::string& path) {
    std::string url;
    for (const unsigned char c : path) {
        if (std::isalnum(c) != 0 || std::string("-._~/").find(static_cast<char>(c)) != std::string::npos) {
            url += static_cast<char>(c);
            continue;
        }
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", c);
        url += code;
    }
    return url;
}

std::string Tooltip(const PlanSheet& s) {
    std::string text = s.number + (s.name.empty() ? "" : " " + s.name) + ": " + NameOf(s.state);
    if (s.seconds > 0.0) text += ", " + Fixed(s.seconds, 1) + " s";
    if (s.warnings > 0) text += ", " + std::to_string(s.warnings) + " warnings";
    return s.reason.empty() ? text : text + "; " + s.reason;
}

std::string Picture(const Plan& plan, const std::string& base, const std::string& folder, bool degrees) {
    Box all;
    for (const PlanSheet& s : plan.sheets) all.Add(BoxOf(s.outline));
    if (all.empty()) return {};
    const double squeeze = degrees ? std::cos((all.y1 + all.y2) / 2 * kDegree) : 1.0;
    const double w = std::max((all.x2 - all.x1) * squeeze, 1e-9), h = std::max(all.y2 - all.y1, 1e-9);
    const double unit = kPicture / std::max(w, h);
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"-4 -4 " + Fixed(w * unit + 8, 1) + " " +
                      Fixed(h * unit + 8, 1) + "\" width=\"" + Fixed(w * unit + 8, 0) +
                      "\" font-family=\"sans-serif\">\n";
    for (const PlanSheet& s : plan.sheets) {
        const auto links = LinksOf(s, base, folder);
        if (!links.empty()) svg += "<a href=\"" + UrlOf(links.front()) + "\">";
        svg += "<polygon class=\"s\" fill=\"" + std::string(ColourOf(s.state)) + "\" points=\"";
        for (std::size_t i = 0; i < s.outline.size(); ++i)
            svg += Fixed((s.outline.x[i] - all.x1) * squeeze * unit, 1) + "," +
                   Fixed((all.y2 - s.outline.y[i]) * unit, 1) + " ";
        svg += "\"><title>" + HtmlText(Tooltip(s)) + "</title></polygon>";
        const Box b = BoxOf(s.outline);
        const double width = (b.x2 - b.x1) * squeeze * unit;
        const double size =
            std::min(12.0, 1.5 * width / static_cast<double>(std::max<std::size_t>(s.number.size(), 1)));
        if (size >= 5.0)
            svg += "<text x=\"" + Fixed(((b.x1 + b.x2) / 2 - all.x1) * squeeze * unit, 1) + "\" y=\"" +
                   Fixed((all.y2 - (b.y1 + b.y2) / 2) * unit + size / 3, 1) + "\" font-size=\"" + Fixed(size, 1) +
                   "\" text-anchor=\"middle\" pointer-events=\"none\">" + HtmlText(s.number) + "</text>";
        svg += links.empty() ? "\n" : "</a>\n";
    }
    return svg + "</svg>\n";
}

std::string Row(const PlanSheet& s, const std::string& base, const std::string& folder) {
    std::string row = "<tr><td class=\"w\">" + HtmlText(s.number) + "</td><td>" + HtmlText(s.name) +
                      "</td><td style=\"background:" + ColourOf(s.state) + "\">" + NameOf(s.state) + "</td><td>";
    for (const std::string& link : LinksOf(s, base, folder))
        row += "<a href=\"" + UrlOf(link) + "\">" + HtmlText(fs::path(link).extension().string().substr(1)) + "</a> ";
    return row + "</td><td class=\"n\">" + (s.seconds > 0.0 ? Fixed(s.seconds, 2) : std::string()) +
           "</td><td class=\"n\">" + std::to_string(s.features) + "</td><td>" +
           (s.state == SheetState::empty ? std::string() : HtmlText(s.reason)) + "</td></tr>\n";
}

bool IsGeographic(const Plan& plan) {
    const auto system = plan.settings.find("system");
    return system != plan.settings.end() && system->second == "geographic";
}

std::string Base(const Plan& plan) {
    const auto folder = plan.settings.find("folder");
    return folder != plan.settings.end() ? folder->second : std::string();
}

}  // namespace

std::string IndexPage(const Plan& plan, const std::string& title, const std::string& folder) {
    std::map<SheetState, long> counts;
    for (const PlanSheet& s : plan.sheets) ++counts[s.state];
    std::string page =
        "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + HtmlText(title) +
        "</title>\n<style>body{font-family:sans-serif;margin:1.5em;color:#222}.s{stroke:#555;stroke-width:.6}"
        "a:hover .s{stroke-width:2}table{border-collapse:collapse;margin-top:1em}td,th{border-bottom:1px solid "
        "#ddd;padding:.2em "
        ".7em;text-align:left}.n{text-align:right}.w{white-space:nowrap}.k{display:inline-block;width:1em;"
        "height:1em;border:1px solid #555;vertical-align:-.1em;margin:0 .3em 0 1em}</style></head><body>\n<h1>" +
        HtmlText(title) + "</h1>\n<p>" + std::to_string(plan.sheets.size()) + " sheets";
    for (const auto& [state, count] : counts)
        page += "<span class=\"k\" style=\"background:" + std::string(ColourOf(state)) + "\"></span>" +
                std::to_string(count) + " " + NameOf(state);
    page += "</p>\n" + Picture(plan, Base(plan), folder, IsGeographic(plan)) +
            "<table><tr><th>number</th><th>name</th><th>state</th><th>files</th><th class=\"n\">seconds</th>"
            "<th class=\"n\">features</th><th>remarks</th></tr>\n";
    std::vector<const PlanSheet*> sorted;
    for (const PlanSheet& s : plan.sheets) sorted.push_back(&s);
    std::sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) { return a->number < b->number; });
    for (const PlanSheet* s : sorted) page += Row(*s, Base(plan), folder);
    return page + "</table></body></html>\n";
}

std::string IndexGeoJson(const Plan& plan) {
    Json features = Json::array();
    for (const PlanSheet& s : plan.sheets) {
        Json ring = Json::array();
        for (std::size_t i = 0; i < s.outline.size(); ++i) ring.push_back({s.outline.x[i], s.outline.y[i]});
        features.push_back({{"type", "Feature"},
                            {"properties",
                             {{"number", s.number},
                              {"name", s.name},
                              {"state", NameOf(s.state)},
                              {"reason", s.reason},
                              {"neighbours", s.neighbours},
                              {"features", s.features},
                              {"seconds", s.seconds},
                              {"warnings", s.warnings},
                              {"input", s.input},
                              {"files", Json::parse(s.files.empty() ? "[]" : s.files, nullptr, false)}}},
                            {"geometry", {{"type", "Polygon"}, {"coordinates", Json::array({ring})}}}});
    }
    return Json{{"type", "FeatureCollection"}, {"features", features}}.dump(-1, ' ', false,
                                                                            Json::error_handler_t::replace) +
           "\n";
}

}  // namespace zm::tool
