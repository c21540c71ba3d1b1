#include "tests/vector_runner/registry.h"

#include <limits>
#include <map>
#include <stdexcept>

namespace zm::vectors {
namespace {

struct FormatEntry {
    std::function<bool(const std::string&, const Json&)> recognises;
    std::function<Outcome(const std::string&, const Json&)> run;
};

std::map<std::string, CallHandler>& Calls() {
    static std::map<std::string, CallHandler> calls;
    return calls;
}

std::vector<FormatEntry>& Formats() {
    static std::vector<FormatEntry> formats;
    return formats;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    throw std::runtime_error(std::string("not a hex digit: ") + c);
}

}  // namespace

Call::Call(const char* name, CallHandler handler) {
    Calls()[name] = std::move(handler);
}

Format::Format(const char*, std::function<bool(const std::string&, const Json&)> recognises,
               std::function<Outcome(const std::string&, const Json&)> run) {
    Formats().push_back({std::move(recognises), std::move(run)});
}

double Real(const Json& value) {
    if (value.is_number()) return value.get<double>();
    const auto text = value.get<std::string>();
    if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
    if (text == "inf") return std::numeric_limits<double>::infinity();
    if (text == "-inf") return -std::numeric_limits<double>::infinity();
    throw std::runtime_error("not a number: " + text);
}

std::vector<double> Reals(const Json& list) {
    std::vector<double> values;
    values.reserve(list.size());
    for (const Json& item : list) values.push_back(Real(item));
    return values;
}

Json FromReal(double value) {
    if (value != value) return "nan";
    if (value == std::numeric_limits<double>::infinity()) return "inf";
    if (value == -std::numeric_limits<double>::infinity()) return "-inf";
    return value;
}

Json FromReals(const double* values, std::size_t count) {
    Json list = Json::array();
    for (std::size_t i = 0; i < count; ++i) list.push_back(FromReal(values[i]));
    return list;
}

std::string FromHex(const std::string& hex) {
    std::string bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<char>(HexDigit(hex[i]) * 16 + HexDigit(hex[i + 1])));
    return bytes;
}

std::string ToHex(const std::string& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        hex.push_back(kDigits[static_cast<unsigned char>(c) >> 4]);
        hex.push_back(kDigits[static_cast<unsigned char>(c) & 15]);
    }
    return hex;
}

std::string Bytes(const Json& text) {
    return text.is_object() ? FromHex(text.at("gbk").get<std::string>()) : text.get<std::string>();
}

bool ZeroSignsCount(const std::string& function) {
    return function == "deg_dms" || function == "dms_deg" || function == "dms_sec" || function == "dms_rad" ||
           function == "rad_dms";
}

Outcome RunRecord(const std::string& fileName, const std::string& directory, const Json& record, bool& known) {
    known = true;
    if (record.contains("f") && record.contains("out")) {
        const auto name = record.at("f").get<std::string>();
        const auto found = Calls().find(name);
        if (found == Calls().end()) {
            known = false;
            return {false, "no handler for the function " + name};
        }
        Json out = Json::object();
        found->second(record.at("in"), out);
        const std::string difference =
            Difference(record.at("out"), out, record.value("tol", Json::object()), ZeroSignsCount(name));
        return {difference.empty(), difference};
    }
    for (const FormatEntry& format : Formats())
        if (format.recognises(fileName, record)) return format.run(directory, record);
    known = false;
    return {false, "no handler for records of this shape"};
}

}  // namespace zm::vectors
