#include <cmath>
#include <sstream>

#include "tests/vector_runner/registry.h"

namespace zm::vectors {
namespace {

std::string Shown(const Json& value) {
    std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > 160) text = text.substr(0, 160) + "...";
    return text;
}

std::string Mismatch(const std::string& where, const Json& expected, const Json& found) {
    return where + ": expected " + Shown(expected) + ", found " + Shown(found);
}

// tolerance is null where none is given: then numbers must be equal. With zeroSigns -0 and 0 are two numbers.
std::string Compare(const std::string& where, const Json& expected, const Json& found, const Json& tolerance,
                    bool zeroSigns) {
    if (expected.is_number_float()) {
        if (!found.is_number()) return Mismatch(where, expected, found);
        const double e = expected.get<double>();
        const double f = found.get<double>();
        if (zeroSigns && e == 0.0 && f == 0.0 && std::signbit(e) != std::signbit(f))
            return Mismatch(where, expected, found);
        if (tolerance.is_number()) {
            if (std::abs(f - e) <= tolerance.get<double>()) return {};
            std::ostringstream text;
            text.precision(17);
            text << where << ": expected " << e << ", found " << f << ", apart " << std::abs(f - e) << ", allowed "
                 << tolerance.get<double>();
            return text.str();
        }
        return f == e ? std::string() : Mismatch(where, expected, found);
    }
    if (expected.is_array()) {
        if (!found.is_array() || found.size() != expected.size()) return Mismatch(where, expected, found);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            auto text = Compare(where + "[" + std::to_string(i) + "]", expected[i], found[i], tolerance, zeroSigns);
            if (!text.empty()) return text;
        }
        return {};
    }
    return expected == found ? std::string() : Mismatch(where, expected, found);
}

}  // namespace

std::string Difference(const Json& expected, const Json& found, const Json& tolerances, bool zeroSigns) {
    for (const auto& [name, value] : expected.items()) {
        if (!found.contains(name)) return name + ": expected " + Shown(value) + ", nothing found";
        const Json tolerance = tolerances.is_object() && tolerances.contains(name) ? tolerances.at(name) : Json();
        auto text = Compare(name, value, found.at(name), tolerance, zeroSigns);
        if (!text.empty()) return text;
    }
    return {};
}

}  // namespace zm::vectors
