// Layer sections of any content: read, looked up, written; what was written reads back the same.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/config/quiet_host.h"
#include "zenromath/config.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool started = (zm::fuzz::StartFamily(), true);
    static_cast<void>(started);
    zm::fuzz::PutFile("project", "map.ini", "[LayerSet]\n" + std::string(reinterpret_cast<const char*>(data), size));
    ReadCengCi();
    for (int code = -1; code < 1001; code += 13) {
        GetColorNo(code);
        GetRec(code);
        GetLayerName(code);
    }
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    if (*count < 1 || *count > 1000) std::abort();
    WriteCengCi();
    const int written = *count;
    const int color = GetColorNo1(150);
    ReadCengCi();
    if (*count != written || GetColorNo1(150) != color) std::abort();
    return 0;
}
