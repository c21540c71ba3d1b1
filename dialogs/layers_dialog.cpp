// Layers: names, ranges of codes, colours, shown or not.
#include <string>

#include "config/layers.h"
#include "config/state.h"
#include "dialogs/cells.h"
#include "dialogs/settings.h"
#include "dialogs/texts.h"
#include "runtime/text/fixed_text.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/config.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::dialogs {
namespace {

using namespace layers;

constexpr int kLowestCode = 100;
constexpr int kHighestCode = 999;
constexpr int kColours = 256;

std::string Row(const std::string& name, int start, int end, int colour, int show) {
    return numbers::Text("%s\t%8d\t%10d\t%10d\t%8d", name.c_str(), start, end, colour, show);
}

std::string Row(const LayerCol& layer) {
    return Row(std::string(runtime::FieldText(layer.name)), layer.start, layer.end, layer.color, layer.show);
}

// Required: parsed as "%s%d%d%d%d", so a blank in the name shifts all later fields. What does not convert keeps its
// value.
void Parse(const std::string& row, LayerCol& layer) {
    scan::Fields fields(row);
    std::string_view name;
    if (!fields.Word(name)) return;
    runtime::CopyCut(layer.name, name);
    for (int* value : {&layer.start, &layer.end, &layer.color, &layer.show})
        if (!fields.Int(*value)) return;
}

}  // namespace

void LayersDialog::Open() {
    const config::State& tables = config::state();
    Rows& rows = field(kList).rows;
    rows.Clear();
    for (int i = 0; i < tables.layerCount && i < config::kLayerLimit; ++i) rows.Add(Row(tables.layers[i]));
    for (const int edit : {kName, kColour, kStart, kEnd}) field(edit).text.clear();
}

void LayersDialog::RowChanged(int id) {
    const Rows& rows = field(kList).rows;
    if (id != kList || rows.selected == Rows::kNone) return;
    CurrentHost().Beep();
    std::string_view rest = rows.at(rows.selected);
    for (const int edit : {kName, kStart, kEnd, kColour}) field(edit).text = Trimmed(TakeCell(rest, '\t'));
    field(kShown).checked = scan::LeadingInt(rest) != 0;
    m_fromRow = true;
}

void LayersDialog::Pressed(int id) {
    Rows& rows = field(kList).rows;
    if (id == kInsert) Insert();
    if (id == kDelete) rows.Delete(rows.selected);
    if (id == kSwitch) {
        CurrentHost().Beep();
        Switch(rows.selected);
    }
    if (id == kSwitchAll) SwitchAll();
    if (id == kOkButton) {
        Store();
        result = IDOK;
    }
    if (id == kCancelButton) result = IDCANCEL;
}

void LayersDialog::Insert() {
    bool filled = true;
    for (const int edit : {kName, kColour, kStart, kEnd}) filled = filled && !field(edit).text.empty();
    const int start = scan::LeadingInt(field(kStart).text);
    const int end = scan::LeadingInt(field(kEnd).text);
    const int colour = scan::LeadingInt(field(kColour).text);
    if (!filled || start < kLowestCode || end > kHighestCode || start > end || colour >= kColours) {
        _LMsg(texts::kLayerIncomplete.gbk, nullptr, 0);
        return;
    }
    Rows& rows = field(kList).rows;
    const int place = rows.selected;
    if (m_fromRow) {
        m_fromRow = false;
        if (_LMsg(texts::kReplaceRow.gbk, texts::kWarning.gbk, 1) == 1) rows.Delete(place);
    }
    if (rows.count() >= config::kLayerLimit) {
        _LMsg("Too many layers", nullptr, 0);
        return;
    }
    rows.Insert(place, Row(field(kName).text, start, end, colour, field(kShown).checked ? 1 : 0));
}

// Turns the last character of a row, which is the last digit of its show flag.
void LayersDialog::Switch(int row) {
    Rows& rows = field(kList).rows;
    std::string text = rows.at(row);
    if (text.empty()) return;
    text.back() = text.back() == '0' ? '1' : '0';
    rows.Put(row, text);
}

void LayersDialog::SwitchAll() {
    CurrentHost().Beep();
    for (int row = 0; row < field(kList).rows.count(); ++row) Switch(row);
}

void LayersDialog::Store() {
    config::State& tables = config::state();
    if (tables.layers == nullptr) {  // the application freed the tables while the dialog was open
        _LMsg("The layer table was freed while the dialog was open: the layers are not saved.", nullptr, 0);
        return;
    }
    const Rows& rows = field(kList).rows;
    tables.layerCount = rows.count();
    for (int row = 0; row < rows.count(); ++row) Parse(rows.at(row), tables.layers[row]);
    config::LayersChanged();
}

void LayersDialog::AfterClose() {
    if (result == IDOK) WriteCengCi();
}

}  // namespace zm::dialogs
