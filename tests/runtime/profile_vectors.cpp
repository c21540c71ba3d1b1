// Recorded calls of the profile service: one call on one file each.
#include <filesystem>
#include <string>

#include "runtime/files/files.h"
#include "runtime/profile/profile.h"
#include "runtime/profile/profile_text.h"
#include "runtime/state.h"
#include "tests/support/scratch.h"
#include "tests/vector_runner/registry.h"

namespace {

using zm::vectors::FromHex;
using zm::vectors::Json;
using zm::vectors::Outcome;
using zm::vectors::ToHex;

// An argument text: null stands for a null pointer.
struct Argument {
    Argument(const Json& args, const char* name) {
        const auto found = args.find(name);
        if (found == args.end() || found->is_null()) return;
        bytes = FromHex(found->get<std::string>());
        pointer = bytes.c_str();
    }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;
    std::string bytes;
    const char* pointer = nullptr;
};

struct Found {
    unsigned int result = 0;
    std::string buffer;
};

Found CallOf(const Json& record, const char* file) {
    const std::string call = record.at("call").get<std::string>();
    const Json& args = record.at("args");
    const Argument section(args, "section");
    const Argument key(args, "key");
    const Argument def(args, args.contains("default") && args.at("default").is_string() ? "default" : "");
    const Argument value(args, "value");
    const Argument text(args, "text");
    const Argument data(args, "data");
    const unsigned int size = args.value("size", 0u);
    Found found;
    // 0xEE behind the end shows what was not written.
    found.buffer.assign(size + 4u, '\xEE');
    if (call == "GetPrivateProfileStringA")
        found.result =
            zm::profile::GetString(section.pointer, key.pointer, def.pointer, found.buffer.data(), size, file);
    else if (call == "GetPrivateProfileIntA")
        found.result = zm::profile::GetInt(section.pointer, key.pointer, args.at("default").get<int>(), file);
    else if (call == "GetPrivateProfileSectionA")
        found.result = zm::profile::GetSection(section.pointer, found.buffer.data(), size, file);
    else if (call == "GetPrivateProfileStructA")
        found.result = zm::profile::GetStruct(section.pointer, key.pointer, found.buffer.data(), size, file) ? 1 : 0;
    else if (call == "WritePrivateProfileStringA")
        found.result = zm::profile::WriteString(section.pointer, key.pointer, value.pointer, file) ? 1 : 0;
    else if (call == "WritePrivateProfileSectionA")
        found.result = zm::profile::WriteSection(section.pointer, text.pointer, file) ? 1 : 0;
    else
        found.result = zm::profile::WriteStruct(section.pointer, key.pointer, data.pointer, size, file) ? 1 : 0;
    return found;
}

// A file without the header lines that name no section.
std::string WithoutEmptyHeaders(const std::string& bytes) {
    std::string kept;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', begin), bytes.size() - 1) + 1;
        const std::string line = bytes.substr(begin, end - begin);
        const std::string_view shown = zm::profile::WithoutBlanks(std::string_view(line).substr(0, line.find('\n')));
        const bool isHeader = shown.size() >= 2 && shown.front() == '[' && shown.back() == ']';
        if (!isHeader || !zm::profile::WithoutBlanks(shown.substr(1, shown.size() - 2)).empty()) kept += line;
        begin = end;
    }
    return kept;
}

// What is read back of a file: sections, keys, values in their order.
std::string ReadBack(const std::string& bytes) {
    const zm::profile::Text text(WithoutEmptyHeaders(bytes));
    std::string all;
    const auto addItems = [&](std::string_view section) {
        text.ForEachItem(section, [&](std::string_view key, bool hasValue, std::string_view value) {
            if (hasValue) all += "  " + std::string(key) + "=" + std::string(value) + "\n";
        });
    };
    addItems("");
    text.ForEachSection([&](std::string_view name) {
        all += "[" + std::string(name) + "]\n";
        addItems(name);
    });
    return all;
}

bool Has(const Json& record, const char* why) {
    for (const Json& reason : record.value("why", Json::array()))
        if (reason == why) return true;
    return false;
}

Outcome Failure(const char* what, const std::string& expected, const std::string& found) {
    return {false, std::string(what) + ": expected " + expected + ", found " + found};
}

Outcome RunProfileRecord(const std::string&, const Json& record) {
    // A doubtful record is one implementation's word. Those of which the layout of a rewritten file, the second closing
    // zero or a list that fits to the byte is all that is in doubt are compared as far as they bind; the others are
    // decided one by one in profile_decisions_test.cpp.
    const std::size_t reasons = record.value("why", Json::array()).size();
    const bool layout = reasons == 1 && Has(record, "layout");
    const bool secondNul = reasons == 1 && Has(record, "second-nul");
    const bool exactFit = reasons == 1 && Has(record, "exact-fit");
    if (record.value("doubtful", false) && !layout && !secondNul && !exactFit) return {};

    const zm::test::ScratchDir scratch;
    const bool missing = record.value("file", "") == "directory-missing";
    const std::filesystem::path file = missing ? scratch / "no such" / "a.ini" : scratch / "a.ini";
    if (!record.at("before").is_null()) zm::test::WriteFile(file, FromHex(record.at("before").get<std::string>()));
    const Found found = CallOf(record, zm::files::PathText(file).c_str());

    const auto result = record.at("result").get<unsigned int>();
    const bool wholeList = exactFit && found.result == record.at("args").at("size").get<unsigned int>() - 1;
    if (found.result != result && !wholeList)
        return Failure("result", std::to_string(result), std::to_string(found.result));
    if (record.contains("buffer") && !record.at("buffer").is_null() && !exactFit) {
        std::string expected = FromHex(record.at("buffer").get<std::string>());
        if (secondNul) expected = expected.substr(0, result) + std::string(2, '\0');
        const std::string buffer = found.buffer.substr(0, expected.size());
        if (buffer != expected) return Failure("buffer", ToHex(expected), ToHex(buffer));
    }
    if (found.buffer.substr(found.buffer.size() - 4) != "\xEE\xEE\xEE\xEE") return {false, "written past the buffer"};

    const bool exists = std::filesystem::exists(file);
    if (record.at("after").is_null()) return exists ? Outcome{false, "a file was made"} : Outcome{};
    if (!exists) return {false, "no file was made"};
    const std::string after = zm::test::ReadFile(file);
    const std::string expected = FromHex(record.at("after").get<std::string>());
    if (layout ? ReadBack(after) != ReadBack(expected) : after != expected)
        return Failure("file", ToHex(expected), ToHex(after));
    return {};
}

const zm::vectors::Format kProfile(
    "profile",
    [](const std::string&, const Json& record) { return record.contains("call") && record.contains("before"); },
    RunProfileRecord);

}  // namespace
