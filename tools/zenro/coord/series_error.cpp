#include "tools/zenro/coord/series_error.h"

#include "tools/kit/angles.h"

#include <proj.h>

#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <string>

#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

struct Projection {
    explicit Projection(int selector) : context(proj_context_create()) {
        proj_log_level(context, PJ_LOG_NONE);
        // The axes are those of forward, digit by digit.
        const char* axes = selector == 54   ? "+a=6378245 +b=6356863.01877305"
                           : selector == 80 ? "+a=6378140 +b=6356755.28815753"
                                            : "+a=6378137 +b=6356752.31414036";
        operation =
            proj_create(context, (std::string("+proj=tmerc +algo=poder_engsager +lon_0=0 +k=1 ") + axes).c_str());
    }
    ~Projection() {
        proj_destroy(operation);
        proj_context_destroy(context);
    }
    Projection(const Projection&) = delete;
    Projection& operator=(const Projection&) = delete;
    PJ_CONTEXT* context;
    PJ* operation = nullptr;
};

}  // namespace

double SeriesError(int selector, double latitude, double offset) {
    static std::map<int, std::unique_ptr<Projection>> known;
    std::unique_ptr<Projection>& projection = known[selector];
    if (projection == nullptr) projection = std::make_unique<Projection>(selector);
    if (projection->operation == nullptr) return std::numeric_limits<double>::quiet_NaN();
    const PJ_COORD exact =
        proj_trans(projection->operation, PJ_FWD, proj_coord(offset * kDegree, latitude * kDegree, 0.0, 0.0));
    double north = 0.0, east = 0.0;
    forward(selector, latitude * kDegree, offset * kDegree, &north, &east, nullptr);
    return std::hypot(exact.xy.x - east, exact.xy.y - north);
}

}  // namespace zm::tool
