// Pen widths by feature code, and the palette of colours.
#include "config/pens.h"

#include <cstring>

#include "config/not_saved.h"
#include "config/state.h"
#include "runtime/profile/profile.h"
#include "runtime/profile/project.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/config.h"
#include "zenromath/runtime.h"

namespace zm::config {
namespace {

constexpr char kFile[] = "neworv.ini";
constexpr char kWidthSection[] = "PenWidth";
constexpr char kColorSection[] = "PenColor";
constexpr int kBesideModule = -1;  // of GetZenroINIPath
constexpr int kColorText = 24;     // bytes of a colour's value, its end byte included

std::string Key(int number) {
    return numbers::Text("%d", number);
}

}  // namespace

std::uint8_t* ReadPenWidth() {
    std::uint8_t* widths = state().penWidths;
    if (widths == nullptr) return nullptr;
    std::memset(widths, kNoWidth, kPenCodes);
    const unsigned int byDefault = GetZenroProfileInt(kWidthSection, "Default", 0, kFile, kBesideModule);
    widths[0] = byDefault >= kNoWidth ? std::uint8_t{0} : static_cast<std::uint8_t>(byDefault);
    for (int code = 1; code < kPenCodes; ++code) {
        // Required: the low byte of a wider value, which existing files count on: 300 is 44.
        widths[code] = static_cast<std::uint8_t>(
            GetZenroProfileInt(kWidthSection, Key(code).c_str(), kNoWidth, kFile, kBesideModule));
    }
    return widths;
}

bool WritePenWidth() {
    const std::uint8_t* widths = state().penWidths;
    if (widths == nullptr) return false;
    profile::Batch file;
    WriteZenroProfileSection(kWidthSection, "\0", kFile, kBesideModule);
    WriteZenroProfileString(kWidthSection, "Default", Key(widths[0]).c_str(), kFile, kBesideModule);
    for (int code = 1; code < kPenCodes; ++code)
        if (widths[code] < kNoWidth)
            WriteZenroProfileString(kWidthSection, Key(code).c_str(), Key(widths[code]).c_str(), kFile, kBesideModule);
    return file.Commit() || SayNotSaved(GetZenroINIPath(kFile, kBesideModule).GetString(), "the pen widths are");
}

}  // namespace zm::config

int GetPenWidth(int code) {
    using namespace zm::config;
    const std::uint8_t* widths = state().penWidths;
    if (widths == nullptr || code < 1 || code >= kPenCodes) return 0;
    return widths[code] < kNoWidth ? widths[code] : widths[0];
}

unsigned long GetColorNo(int code) {
    return zm::config::state().palette[GetColorNo1(code)];
}

int Get_SysColor(unsigned long*& palette) {
    palette = zm::config::state().palette;
    return zm::config::kColorCount;
}

void ReadColorSetting(void) {
    using namespace zm::config;
    for (int i = 1; i < kColorCount; ++i) {
        char value[kColorText];
        // Required: a bare file name, which leads to the machine's configuration directory. Pen widths lie beside the
        // module, so that one installation can serve users with colours of their own.
        zm::profile::GetString(kColorSection, Key(i).c_str(), "*", value, sizeof value, kFile);
        if (value[0] == '*') return;
        int parts[3] = {};
        zm::scan::Fields fields(value);
        if (fields.Int(parts[0]) && fields.Literal(',') && fields.Int(parts[1]) && fields.Literal(','))
            fields.Int(parts[2]);
        // Required: no limit to a byte. A part above 255 carries into the next.
        state().palette[i] = static_cast<std::uint32_t>(parts[0]) + 256u * static_cast<std::uint32_t>(parts[1]) +
                             65536u * static_cast<std::uint32_t>(parts[2]);
    }
}

void WriteColorSetting(void) {
    using namespace zm::config;
    zm::profile::Batch file;
    for (int i = 1; i < kColorCount; ++i) {
        const unsigned long color = state().palette[i];
        const auto byte = [&](int shift) { return static_cast<int>(color >> shift & 0xFF); };
        zm::profile::WriteString(kColorSection, Key(i).c_str(),
                                 zm::numbers::Text("%d,%d,%d", byte(0), byte(8), byte(16)).c_str(), kFile);
    }
    if (!file.Commit())
        SayNotSaved(std::string(zm::runtime::Project().machineDirectory) + "\\" + kFile, "the colours are");
}
