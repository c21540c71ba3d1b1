// Note files of any content: read, looked up, written and read again.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/config/quiet_host.h"
#include "zenromath/config.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool started = (zm::fuzz::StartFamily(), true);
    static_cast<void>(started);
    zm::fuzz::PutFile("module", "Orvnote.cod", {reinterpret_cast<const char*>(data), size});
    TqNoteLayBase notes;
    if (notes.GetCount() == 0) return 0;
    for (int code = 0; code < 256; code += 15) {
        notes.ShowRcd(static_cast<char>(code));
        notes.FontInfo(static_cast<char>(code));
    }
    SpOrvNoteDef definition{};
    notes.GetNoteLayByOrvCode(1, definition);
    if (definition.value7 < 1) std::abort();
    const int count = notes.GetCount();
    if (notes.WriteNoteClassInfo() == 0) return 0;
    notes.WriteNoteFontInfo();
    // What was written is read again: as many classes, unless a text of theirs breaks its line.
    if (notes.ReadNoteClassInfo() > count) std::abort();
    notes.ReadNoteFontInfo();
    return 0;
}
