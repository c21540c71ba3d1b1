#include "tools/zenro/map/datum_way.h"

#include <ogr_spatialref.h>
#include <proj.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

template <auto Free>
struct Freed {
    template <class T>
    void operator()(T* thing) const {
        Free(thing);
    }
};
using Object = std::unique_ptr<PJ, Freed<proj_destroy>>;
using Objects = std::unique_ptr<PJ_OBJ_LIST, Freed<proj_list_destroy>>;
using Factory = std::unique_ptr<PJ_OPERATION_FACTORY_CONTEXT, Freed<proj_operation_factory_context_destroy>>;
using Context = std::unique_ptr<PJ_CONTEXT, Freed<proj_context_destroy>>;

// "EPSG:15918"; empty where the operation has no code.
std::string CodeOf(const PJ* object) {
    const char* authority = proj_get_id_auth_name(object, 0);
    const char* code = proj_get_id_code(object, 0);
    return authority != nullptr && code != nullptr ? std::string(authority) + ":" + code : std::string();
}

// The codes of all steps that change the datum.
std::string CodesOf(PJ_CONTEXT* context, const PJ* operation) {
    if (proj_get_type(operation) != PJ_TYPE_CONCATENATED_OPERATION) return CodeOf(operation);
    std::string codes;
    for (int i = 0; i < proj_concatoperation_get_step_count(context, operation); ++i) {
        const Object step(proj_concatoperation_get_step(context, operation, i));
        if (step == nullptr || proj_get_type(step.get()) == PJ_TYPE_CONVERSION) continue;
        const std::string code = CodeOf(step.get());
        if (!code.empty()) codes += (codes.empty() ? "" : " + ") + code;
    }
    return codes;
}

std::string Describe(PJ_CONTEXT* context, const PJ* operation) {
    const char* name = proj_get_name(operation);
    std::string text = name != nullptr ? name : Phrase("an operation without name");
    const std::string codes = CodesOf(context, operation);
    if (!codes.empty()) text += " (" + codes + ")";
    const char* area = nullptr;
    double w = 0.0, s = 0.0, e = 0.0, n = 0.0;
    if (proj_get_area_of_use(context, operation, &w, &s, &e, &n, &area) != 0 && area != nullptr) {
        std::string place = area;
        while (!place.empty() && place.back() == '.') place.pop_back();
        constexpr std::size_t kLongest = 100;
        if (place.size() > kLongest) place = place.substr(0, place.find_last_of(" ;,", kLongest)) + " ...";
        text += Phrase(", made for {0}", place);
    }
    const double accuracy = proj_coordoperation_get_accuracy(context, operation);
    return text + (accuracy >= 0.0 ? Phrase(", good to {0} m", Fixed(accuracy, accuracy < 1.0 ? 2 : 0))
                                   : Phrase(", of unknown accuracy"));
}

Objects Candidates(PJ_CONTEXT* context, const PJ* from, const PJ* to, const GeographicBox* box) {
    const Factory factory(proj_create_operation_factory_context(context, nullptr));
    proj_operation_factory_context_set_allow_ballpark_transformations(context, factory.get(), 0);
    proj_operation_factory_context_set_grid_availability_use(context, factory.get(),
                                                             PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
    proj_operation_factory_context_set_spatial_criterion(
        context, factory.get(),
        box != nullptr ? PROJ_SPATIAL_CRITERION_STRICT_CONTAINMENT : PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
    if (box != nullptr)
        proj_operation_factory_context_set_area_of_interest(context, factory.get(), box->west, box->south, box->east,
                                                            box->north);
    return Objects(proj_create_operations(context, from, to, factory.get()));
}

}  // namespace

void GeographicBox::Add(double longitude, double latitude) {
    west = std::min(west, longitude);
    south = std::min(south, latitude);
    east = std::max(east, longitude);
    north = std::max(north, latitude);
}

std::unique_ptr<DatumWay> DatumWay::Find(const OGRSpatialReference& from, int geographicCode,
                                         const GeographicBox& box) {
    double own[7];
    const bool carriesParameters = from.GetTOWGS84(own, 7) == OGRERR_NONE;
    if (box.empty() && !carriesParameters) return nullptr;
    Context context(proj_context_create());
    proj_log_level(context.get(), PJ_LOG_NONE);
    proj_context_set_enable_network(context.get(), 0);
    char* wkt = nullptr;
    const char* const form[] = {"FORMAT=WKT2_2019", nullptr};
    if (from.exportToWkt(&wkt, form) != OGRERR_NONE) return nullptr;
    const Object source(proj_create(context.get(), wkt));
    CPLFree(wkt);
    const Object target(proj_create(context.get(), ("EPSG:" + std::to_string(geographicCode)).c_str()));
    if (source == nullptr || target == nullptr) return nullptr;
    const Objects list = Candidates(context.get(), source.get(), target.get(), carriesParameters ? nullptr : &box);
    if (list == nullptr || proj_list_get_count(list.get()) == 0) return nullptr;
    const Object first(proj_list_get(context.get(), list.get(), 0));
    if (proj_coordoperation_has_ballpark_transformation(context.get(), first.get()) != 0) return nullptr;
    Object usual(proj_normalize_for_visualization(context.get(), first.get()));
    if (usual == nullptr) return nullptr;
    std::unique_ptr<DatumWay> way(new DatumWay);
    way->m_description = carriesParameters ? Phrase("the parameters that its system carries, of unknown accuracy")
                                           : Describe(context.get(), first.get());
    way->m_operation = usual.release();
    way->m_context = context.release();
    return way;
}

DatumWay::~DatumWay() {
    proj_destroy(static_cast<PJ*>(m_operation));
    proj_context_destroy(static_cast<PJ_CONTEXT*>(m_context));
}

void DatumWay::Apply(std::size_t n, double* x, double* y) const {
    proj_trans_generic(static_cast<PJ*>(m_operation), PJ_FWD, x, sizeof(double), n, y, sizeof(double), n, nullptr, 0, 0,
                       nullptr, 0, 0);
    for (std::size_t i = 0; i < n; ++i)
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) x[i] = y[i] = std::numeric_limits<double>::quiet_NaN();
}

}  // namespace zm::tool
