// The layer table: named ranges of feature codes with colour and show flag, from the project's ".ini" file.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "config/layers.h"
#include "config/not_saved.h"
#include "config/pens.h"
#include "config/state.h"
#include "config/texts.h"
#include "runtime/profile/profile.h"
#include "runtime/profile/project.h"
#include "runtime/text/fixed_text.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/config.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::config {
namespace {

constexpr char kExtension[] = ".ini";
constexpr char kSection[] = "LayerSet";
constexpr char kCountKey[] = "Layers";
constexpr int kLineSize = 80;  // bytes of a layer's value, its end byte included
constexpr std::size_t kShortestLine = 4;
constexpr unsigned int kHighestColor = 9;
constexpr int kNoMemory = 13;

std::string LayerKey(int number) {
    return numbers::Text("Layer%d", number);
}

void AllocateTables() {
    State& s = state();
    if (s.layers != nullptr) return;
    s.layers = static_cast<LayerCol*>(s.allocate(kLayerLimit * sizeof(LayerCol)));
    s.penWidths = static_cast<std::uint8_t*>(s.allocate(kPenCodes));
    if (s.layers == nullptr || s.penWidths == nullptr) {
        DeleteCengCi8Dlg();
        _LMsg("layer space err", nullptr, 0);
        CurrentHost().EndProcess(kNoMemory);
    }
    std::memset(s.layers, 0, kLayerLimit * sizeof(LayerCol));
    std::memset(s.penWidths, kNoWidth, kPenCodes);
}

// Parses "%s%d%d%d%d"; what is missing is 0. False where something was missing or the name had to be cut.
bool ParseLayer(std::string_view line, LayerCol& layer) {
    layer = LayerCol{};
    scan::Fields fields(line);
    std::string_view name;
    if (!fields.Word(name)) return false;
    const bool whole = runtime::CopyCut(layer.name, name);
    return fields.Int(layer.start) && fields.Int(layer.end) && fields.Int(layer.color) && fields.Int(layer.show) &&
           whole;
}

void TellOfBadLines(int count, const std::string& first) {
    std::string text = runtime::Project().currentFile;
    text += ": " + first +
            "\nA layer line has a name of at most 11 bytes without blanks and four numbers: first code, last " +
            "code, colour number, show flag. What is missing is taken as 0, a longer name is cut.";
    if (count > 1) text += numbers::Text("\n%d lines are wrong.", count);
    _LMsg(text.c_str(), nullptr, 0);
}

void ReadLayers(int count) {
    int bad = 0;
    std::string firstBad;
    for (int i = 0; i < count; ++i) {
        char line[kLineSize];
        const std::string key = LayerKey(i + 1);
        runtime::GetText("", line, sizeof line, key.c_str(), kSection);
        const bool isShort = std::strlen(line) < kShortestLine;
        _LErr(isShort ? 1 : 0, "CengCi Ini err", "ReadCengCi", "tqapp1");
        if (ParseLayer(line, state().layers[i]) || isShort) continue;
        if (bad++ == 0) firstBad = key + "=" + line;
    }
    if (bad > 0) TellOfBadLines(bad, firstBad);
}

std::string NameOf(const LayerCol& layer) {
    return std::string(runtime::FieldText(layer.name));
}

// A line end would cut the line and lose the layer.
std::string NameInFile(const LayerCol& layer) {
    std::string name = NameOf(layer);
    for (char& c : name)
        if (c == '\n' || c == '\r') c = '_';
    return name;
}

// Names that the reader takes for something else: they are saved as they stand, and said.
void TellOfShiftingNames() {
    int shifting = 0;
    std::string first;
    for (int i = 0; i < state().layerCount; ++i) {
        const std::string name = NameOf(state().layers[i]);
        if (!name.empty() && name.find_first_of(" \t\n\v\f\r") == std::string::npos) continue;
        if (shifting++ == 0) first = LayerKey(i + 1) + "=" + NameInFile(state().layers[i]);
    }
    if (shifting == 0) return;
    std::string text = runtime::Project().currentFile;
    text +=
        ": " + first +
        "...\nThe name of this layer is empty or has a blank, a tab or a line end in it. A blank ends a name, so the "
        "line is read back with another name and other numbers; a line end was saved as _. Give the layer a name "
        "without them and save again.";
    if (shifting > 1) text += numbers::Text("\n%d layers have such names.", shifting);
    _LMsg(text.c_str(), nullptr, 0);
}

void MakeDefaultLayer() {
    State& s = state();
    s.layerCount = 1;
    s.layers[0] = LayerCol{{}, 100, 999, 1, 1};
    runtime::CopyCut(s.layers[0].name, texts::kDefaultLayer.gbk);
}

bool Holds(const LayerCol& layer, int code) {
    return layer.start <= code && code <= layer.end;
}

LayerCol* FirstLayerOf(int code) {
    const State& s = state();
    if (s.layers == nullptr) return nullptr;
    LayerCol* const end = s.layers + std::clamp(s.layerCount, 0, kLayerLimit);
    LayerCol* const found = std::find_if(s.layers, end, [&](const LayerCol& layer) { return Holds(layer, code); });
    return found != end ? found : nullptr;
}

void IndexLayers() {
    State& s = state();
    s.layerOfCode.assign(kLayerLimit, -1);
    for (int i = std::clamp(s.layerCount, 0, kLayerLimit) - 1; i >= 0; --i)
        for (int code = std::max(s.layers[i].start, 0); code <= std::min(s.layers[i].end, kLayerLimit - 1); ++code)
            s.layerOfCode[static_cast<std::size_t>(code)] = static_cast<std::int16_t>(i);
}

// The first layer that holds a code, null if none. As long as nobody outside has the table, an index answers for the
// usual codes; a table that callers may change at any time is searched.
LayerCol* LayerOf(int code) {
    const State& s = state();
    if (s.layerOfCode.empty() || code < 0 || code >= kLayerLimit) return FirstLayerOf(code);
    const int number = s.layerOfCode[static_cast<std::size_t>(code)];
    return number >= 0 ? s.layers + number : nullptr;
}

}  // namespace

void LayersChanged() {
    if (!state().tableHandedOut) IndexLayers();
}

}  // namespace zm::config

void ReadCengCi(void) {
    using namespace zm::config;
    zm::runtime::SetExtension(kExtension);
    State& s = state();
    s.layerCount = std::min(zm::runtime::GetInt(0, kCountKey, kSection), kLayerLimit);
    s.layerOfCode.clear();
    AllocateTables();
    if (s.layerCount > 0)
        ReadLayers(s.layerCount);
    else
        MakeDefaultLayer();
    LayersChanged();
    ReadColorSetting();
    ReadPenWidth();
}

void WriteCengCi(void) {
    using namespace zm::config;
    zm::runtime::SetExtension(kExtension);
    State& s = state();
    s.layerCount = std::min(s.layerCount, kLayerLimit);
    // Without a table there are no layers to be saved, and those of the file stay.
    if (s.layers == nullptr) return;
    zm::profile::Batch file;
    zm::runtime::WriteInt(s.layerCount, kCountKey, kSection);
    for (int i = 0; i < s.layerCount; ++i) {
        const LayerCol& layer = s.layers[i];
        zm::runtime::WriteText(zm::numbers::Text("%s %d %d %d %d", NameInFile(layer).c_str(), layer.start, layer.end,
                                                 layer.color, layer.show)
                                   .c_str(),
                               LayerKey(i + 1).c_str(), kSection);
    }
    if (!file.Commit()) zm::config::SayNotSaved(zm::runtime::Project().currentFile, "the layers are");
    TellOfShiftingNames();
}

void Get_CengCi(LayerCol*& table, int*& count) {
    zm::config::State& s = zm::config::state();
    s.tableHandedOut = true;
    s.layerOfCode.clear();
    table = s.layers;
    count = &s.layerCount;
}

int GetColorNo1(int code) {
    LayerCol* layer = zm::config::LayerOf(code);
    if (layer == nullptr) return 0;
    // Required: repaired in the table, for good; WriteCengCi saves it, and files lose colours beyond the palette so.
    if (static_cast<unsigned int>(layer->color) > zm::config::kHighestColor) layer->color = 1;
    return layer->color;
}

int GetRec(int code) {
    const LayerCol* layer = zm::config::LayerOf(code);
    return layer != nullptr ? layer->show : 0;
}

char* GetLayerName(int code) {
    LayerCol* layer = zm::config::LayerOf(code);
    if (layer == nullptr) return nullptr;
    layer->name[sizeof layer->name - 1] = '\0';  // a caller may have filled the whole field
    return layer->name;
}

void DeleteCengCi8Dlg(void) {
    zm::config::State& s = zm::config::state();
    std::free(s.layers);
    std::free(s.penWidths);
    s.layers = nullptr;
    s.penWidths = nullptr;
    s.layerCount = 0;
    s.layerOfCode.clear();
}
