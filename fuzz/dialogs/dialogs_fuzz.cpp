// Sessions of any steps in the six settings dialogs: typing, rows, buttons, OK and cancel, on files of any state. A
// step is three bytes: what is done, to which control, with which text or row.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "config/state.h"
#include "dialogs/settings.h"
#include "fuzz/config/quiet_host.h"
#include "tests/dialogs/session.h"

namespace {

using namespace zm::dialogs;

constexpr std::size_t kMostSteps = 200;

// Texts that fields are about, and such that are none.
constexpr std::string_view kTexts[] = {"",         "1",     "0",    "12",          "999",
                                       "1000",     "-1",    "2.5",  "1e300",       "nan",
                                       "\xB2\xE2", "\xB2",  "[",    "=",           "a\tb",
                                       "0,0,0",    "255",   "256",  "99999999999", "\xC8\xAB\xBD\xC7\xD7\xD6\xB7\xFB",
                                       "@",        "#",     " 3 ",  "\"",          ";",
                                       "0.13",     "1,2,3", "song", "%s%n",        "-2147483648"};

void Step(zm::vectors::LogicHand& hand, const Dialog& dialog, const std::uint8_t* step) {
    const auto& controls = dialog.layout().controls;
    const Control& control = controls[step[1] % controls.size()];
    if (control.id == -1) return;
    const int count = static_cast<int>(hand.Rows(control.id).size());
    const int row = count == 0 ? -1 : static_cast<int>(step[2]) % (count + 1) - 1;
    switch (step[0] % 6) {
        case 0:
        case 1:
            return hand.Type(control.id, std::string(kTexts[step[2] % std::size(kTexts)]));
        case 2:
            return hand.Check(control.id, (step[2] & 1) != 0);
        case 3:
            return hand.Select(control.id, row);
        case 4:
            return hand.Click(control.id, row);
        default:
            return hand.Press(control.id);
    }
}

void Play(Dialog& dialog, const std::uint8_t*& data, const std::uint8_t* end) {
    zm::vectors::LogicHand hand(dialog);
    for (std::size_t steps = 0; end - data >= 3 && hand.IsOpen() && steps < kMostSteps; ++steps, data += 3)
        Step(hand, dialog, data);
    if (hand.IsOpen()) hand.Escape();
    dialog.AfterClose();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool started = (zm::fuzz::StartFamily(), true);
    static_cast<void>(started);
    zm::config::ResetState();
    const std::uint8_t* end = data + size;
    zm::fuzz::PutFile("project", "map.ini", "[LayerSet]\nTotal=2\nL1=1,road,7\nL2=2,river,5\n");
    zm::fuzz::PutFile("module", "neworv.ini", "[PenWidth]\nDefault=20\n5=300\n");
    zm::fuzz::PutFile("module", "Orvnote.cod", "[NOTE CLASS]\nTOTAL=1\nC01=0,1,1,any,2.0,2.0,0,0,0,0\n");
    TqNoteLayBase notes;
    while (end - data > 3) {
        const unsigned which = *data++ % 6;
        CString value = "text";
        LayersDialog layers;
        WidthsDialog widths;
        ClassesDialog classes(notes);
        FontsDialog fonts(notes);
        ColoursDialog colours;
        LineDialog line("title", value);
        Dialog* const all[] = {&layers, &widths, &classes, &fonts, &colours, &line};
        Play(*all[which], data, end);
    }
    return 0;
}
