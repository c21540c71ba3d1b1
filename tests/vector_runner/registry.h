// Recorded calls and how they are run. A handler file registers what it can run at start:
//
//   static const zm::vectors::Call kDegDms("deg_dms", [](const Json& in, Json& out) {
//       out["ret"] = deg_dms(Real(in.at("deg")));
//   });
//
// and whole-record formats (profile, gdi, dwg, scenes) register a Format, which recognises its records itself.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zm::vectors {

using Json = nlohmann::json;

/// A double of the files: a number, or "nan", "inf", "-inf".
double Real(const Json& value);
std::vector<double> Reals(const Json& list);
/// A double for the output, not-a-number and infinities as in the files.
Json FromReal(double value);
Json FromReals(const double* values, std::size_t count);
/// A text of the scene files: a JSON string, or {"gbk": hex}; the bytes.
std::string Bytes(const Json& text);
std::string FromHex(const std::string& hex);
std::string ToHex(const std::string& bytes);

/// One function of the records {"f", "in", "out", "tol"}: fills out with the results under their names.
/// in.mini and in.settings are handled by the handler's own file where they can occur.
using CallHandler = std::function<void(const Json& in, Json& out)>;
struct Call {
    Call(const char* name, CallHandler handler);
};

/// What a record of another format came to: no failure, or a text with the expected and the found value.
struct Outcome {
    bool passed = true;
    std::string message;
};

struct Format {
    /// recognises: does a record of this shape belong to the format? fileName: without its directory.
    Format(const char* name, std::function<bool(const std::string& fileName, const Json& record)> recognises,
           std::function<Outcome(const std::string& directory, const Json& record)> run);
};

/// Compares out with expected by the tolerances; a text with the first difference, empty if there is none.
/// zeroSigns: a zero must also have the sign of the expected zero.
std::string Difference(const Json& expected, const Json& found, const Json& tolerances, bool zeroSigns = false);

/// Whether the sign of a zero result counts for this function: the conversions of packed sexagesimal numbers.
bool ZeroSignsCount(const std::string& function);

/// Runs one record. known is false where nothing can run it.
Outcome RunRecord(const std::string& fileName, const std::string& directory, const Json& record, bool& known);

}  // namespace zm::vectors
