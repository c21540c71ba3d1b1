// Whole numbers of JSON. The JSON library turns 1e80 into whatever the processor makes of it, and 3000000000 into an
// int below zero; a file or a log that says so is damaged, and is refused as one with a wrong type.
#pragma once

#include <utility>

namespace zm::tool {

/// The whole number that json is. Throws Json::type_error where it is none, has a decimal point or does not fit T.
template <class T, class Json>
T WholeOf(const Json& json) {
    const bool fits = json.is_number_unsigned()
                          ? std::in_range<T>(json.template get_ref<const typename Json::number_unsigned_t&>())
                          : json.is_number_integer() &&
                                std::in_range<T>(json.template get_ref<const typename Json::number_integer_t&>());
    if (!fits) throw Json::type_error::create(302, "number", &json);
    return json.template get<T>();
}

}  // namespace zm::tool
