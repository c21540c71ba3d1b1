// Any text as a list of points, in every form that an option can ask for. The first byte chooses the form.
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tools/kit/tool_host.h"
#include "tools/zenro/coord/points_io.h"

namespace {

using namespace zm::tool;

PointFormat FormatOf(unsigned choice) {
    static constexpr const char* kColumns[] = {"", "", "no,n,e,h", "code,lat,lon", "-,e,n", "no,lon,lat,h"};
    static constexpr const char* kEncodings[] = {"", "GBK", "GB18030", "UTF-16"};
    PointFormat format;
    format.kind = (choice & 1) != 0 ? PointKind::plane : PointKind::geographic;
    format.firstAxisFirst = (choice & 2) != 0;
    format.angles = static_cast<AngleForm>(choice / 4 % 3);
    const std::string columns = kColumns[choice / 12 % 6];
    if (!columns.empty()) {
        format.columns = ColumnsOf(columns);
        format.kind = KindOf(format.columns);
    }
    format.encoding = kEncodings[choice / 72 % 4];
    return format;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    Report report;
    report.SetQuiet(true);
    ToolHost host(report);
    Context context{report, host};
    const int file = memfd_create("points", MFD_CLOEXEC);
    if (file < 0 || write(file, data + 1, size - 1) != static_cast<ssize_t>(size - 1)) std::abort();
    const std::string name = "/proc/self/fd/" + std::to_string(file);
    const auto work = [](const PointLine& point) {
        if (!std::isfinite(point.first) || !std::isfinite(point.second) || std::isinf(point.height)) std::abort();
    };
    try {
        const PointFormat format = FormatOf(data[0]);
        ReadPoints(name, format, context, work);
        ReadLongitudes(name, format, context, work);
    } catch (const Failure&) {
    }
    close(file);
    return 0;
}
