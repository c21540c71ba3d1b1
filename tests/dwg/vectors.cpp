// Recorded drawing sessions: scripts of the writer's operations and the bytes that they leave in the file.
#include <cmath>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "dwg/format/bytes.h"
#include "dwg/format/file_layout.h"
#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "runtime/files/files.h"
#include "runtime/state.h"
#include "runtime/text/gbk.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tests/vector_runner/registry.h"
#include "zenromath/geometry.h"
#include "zenromath/runtime.h"

namespace {

using zm::vectors::FromHex;
using zm::vectors::Json;
using zm::vectors::Outcome;
using zm::vectors::Real;
using zm::vectors::Reals;
using zm::vectors::ToHex;

constexpr double kTolerance = 1e-9;  // of the numbers in records that pass sines and arc tangents

std::string FromBase64(const std::string& text) {
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
        static const std::string kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        const std::size_t digit = kDigits.find(c);
        if (digit == std::string::npos) break;
        bits = bits << 6 | static_cast<unsigned>(digit);
        count += 6;
        if (count >= 8) bytes += static_cast<char>(bits >> (count -= 8) & 0xFF);
    }
    return bytes;
}

std::string TextOf(const Json& value) {
    const auto text = value.get<std::string>();
    return text.rfind("b64:", 0) == 0 ? FromBase64(text.substr(4)) : zm::gbk::FromUtf8(text);
}

// The height table that is armed while a script runs.
using HeightTable = std::unique_ptr<Find4H>;

std::vector<double> Flatten(const Json& op, std::size_t perPoint) {
    std::vector<double> flat;
    for (std::size_t i = 1; i < op.size(); ++i)
        for (std::size_t k = 0; k < perPoint; ++k) flat.push_back(Real(op[i][k]));
    return flat;
}

HeightTable MakeHeights(const Json& op) {
    std::vector<double> x, y, h;
    for (std::size_t i = 1; i < op.size(); ++i) {
        x.push_back(Real(op[i][0]));
        y.push_back(Real(op[i][1]));
        h.push_back(Real(op[i][2]));
    }
    return std::make_unique<Find4H>(static_cast<int>(x.size()), x.data(), y.data(), h.data());
}

bool RunSelection(const std::string& name, const Json& op) {
    if (name == "setcolor") {
        _LDBsetcolor(op[1].get<int>());
    } else if (name == "setelev") {
        _LDBsetelev(Real(op[1]), Real(op[2]));
    } else if (name == "setdwgelev") {
        SetDwgElevation(Real(op[1]));
    } else if (name == "setlay") {
        _LDBsetlay(TextOf(op[1]).data());
    } else if (name == "setltype") {
        _LDBsetltype(TextOf(op[1]).data());
    } else if (name == "setstyle") {
        _LDBsetstyle(op[1].get<int>(), TextOf(op[2]).data(), TextOf(op[3]).data(), Real(op[4]), Real(op[5]));
    } else {
        return false;
    }
    return true;
}

bool RunText(const std::string& name, const Json& op) {
    if (name == "fittext") {
        _LDBfittext(Real(op[1]), Real(op[2]), Real(op[3]), Real(op[4]), Real(op[5]), TextOf(op[6]).c_str());
        return true;
    }
    if (name != "text" && name != "inttext" && name != "realtext") return false;
    const int justification = op[1].get<int>();
    const double x = Real(op[2]), y = Real(op[3]), height = Real(op[4]), angle = Real(op[5]);
    if (name == "text")
        _LDBtext(justification, x, y, height, angle, TextOf(op[6]).c_str());
    else if (name == "inttext")
        _LDBinttext(justification, x, y, height, angle, op[6].get<int>());
    else
        _LDBrealtext(justification, x, y, height, angle, Real(op[6]));
    return true;
}

bool RunFigure(const std::string& name, const Json& op) {
    const auto n = static_cast<int>(op.size()) - 1;
    if (name == "polyline") {
        _LDBpolyline(Flatten(op, 2).data(), n);
        return true;
    }
    if (name == "polyline3d") {
        _LDBpolyline3d(Flatten(op, 3).data(), n);
        return true;
    }
    std::vector<double> v;
    for (std::size_t i = 1; i < op.size() && op[i].is_number(); ++i) v.push_back(Real(op[i]));
    if (name == "line")
        _LDBline(v[0], v[1], v[2], v[3]);
    else if (name == "point")
        _LDBpoint(v[0], v[1]);
    else if (name == "circle")
        _LDBcircle(v[0], v[1], v[2]);
    else if (name == "arc")
        _LDBarc(v[0], v[1], v[2], v[3], v[4]);
    else if (name == "trace")
        _LDBtrace(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
    else if (name == "solid")
        _LDBsolid(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
    else if (name == "face3d")
        _LDBface3d(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11]);
    else if (name == "insert")
        _LDBinsert(v[0], v[1], v[2], v[3], v[4], TextOf(op[6]).c_str());
    else
        return false;
    return true;
}

void RunScript(const Json& script) {
    HeightTable heights;
    for (const Json& op : script) {
        const auto name = op[0].get<std::string>();
        if (name == "find4h")
            heights = MakeHeights(op);
        else if (name == "endfind4h")
            heights.reset();
        else if (!RunSelection(name, op) && !RunText(name, op) && !RunFigure(name, op))
            throw std::runtime_error("no operation " + name);
    }
}

const Json& SharedFiles(const std::string& directory) {
    static std::map<std::string, Json> read;
    Json& files = read[directory];
    if (files.is_null()) files = Json::parse(zm::test::ReadFile(std::filesystem::path(directory) / "dwg-files.json"));
    return files;
}

// Where two files differ. With approx a text's numbers may differ by the tolerance.
std::string DifferenceOf(const std::string& expected, const std::string& found, bool approx) {
    using namespace zm::dwg;
    if (expected.size() != found.size())
        return "size " + std::to_string(found.size()) + ", expected " + std::to_string(expected.size());
    const auto* want = reinterpret_cast<const std::uint8_t*>(expected.data());
    const auto* have = reinterpret_cast<const std::uint8_t*>(found.data());
    std::vector<bool> close(expected.size(), false);
    if (approx) {
        std::size_t at = Load32(want + kEntitiesStart);
        const std::size_t end = Load32(want + kEntitiesEnd);
        while (at + kEntityHeaderSize <= end && Load16(want + at + 2) >= kEntityHeaderSize) {
            if (Load16(want + at) == kText.word)
                for (const std::size_t field : {10, 18, 26, 34})
                    if (std::fabs(LoadReal(want + at + field) - LoadReal(have + at + field)) <= kTolerance)
                        std::fill_n(close.begin() + static_cast<std::ptrdiff_t>(at + field), 8, true);
            at += Load16(want + at + 2);
        }
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (want[i] == have[i] || close[i]) continue;
        return "offset " + std::to_string(i) + ": " + ToHex(found.substr(i, 16)) + ", expected " +
               ToHex(expected.substr(i, 16));
    }
    return {};
}

// Whether a session inserts the block of a file. The others are not made: TREE.dwg and tree.dwg are one on some systems.
bool IsInserted(const Json& record, const std::string& file) {
    for (const Json& session : record.at("sessions"))
        for (const Json& operation : session)
            if (operation.at(0) == "insert" && operation.back().get<std::string>() + ".dwg" == file) return true;
    return false;
}

// Files and project of one record.
class Workshop {
 public:
    Workshop(const Json& files, const Json& record) : m_home(m_dir.path()) {
        namespace fs = std::filesystem;
        const auto name = record.at("template").get<std::string>();
        m_template = FromHex(files.at("templates").at(name).get<std::string>());
        zm::test::WriteFile(m_dir / "acad.dwg", m_template);
        zm::test::WriteFile(m_dir / "ACAD.LIN", files.at("ACAD.LIN").get<std::string>());
        for (const auto& [block, hex] : files.at("block_files").items())
            if (IsInserted(record, block)) zm::test::WriteFile(m_dir / block, FromHex(hex.get<std::string>()));
        zm::runtime::StartProjectFiles();
        zm::dwg::ResetState();
    }
    ~Workshop() {
        zm::dwg::ResetState();
        zm::runtime::ResetState();
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    std::string Expected(const Json& file) const {
        const std::string header = FromHex(file.at("header").get<std::string>());
        return header + m_template.substr(96, 1310 - 96) + FromHex(file.at("from1310").get<std::string>());
    }
    std::string Found(const std::string& name) const { return zm::test::ReadFile(m_dir / name); }

 private:
    zm::test::ScratchDir m_dir;
    zm::test::ScopedCurrentDir m_home;
    std::string m_template;
};

Outcome Run(const std::string& directory, const Json& record) {
    const Workshop workshop(SharedFiles(directory), record);
    const Json& expect = record.at("expect");
    const Json& sessions = record.at("sessions");
    Json messages = Json::array();
    Json ends;
    std::size_t finished = 0;
    {
        zm::test::TestHost host;
        try {
            for (; finished < sessions.size(); ++finished) {
                std::string name = "out" + std::to_string(finished) + ".dwg";
                _LDBopendwg(name.data());
                RunScript(sessions[finished]);
                _LDBclosedwg();
            }
        } catch (const zm::test::ProcessEnded& end) {
            ends = end.status;
        }
        zm::dwg::ResetState();
        for (const auto& box : host.boxes)
            if (box.title != "file open error") messages.push_back(zm::gbk::ToUtf8(box.text));
    }
    if (ends != expect.at("ends")) return {false, "ends " + ends.dump() + ", expected " + expect.at("ends").dump()};
    // The message behind which the process ends is not among those listed.
    if (!ends.is_null() && !messages.empty()) messages.erase(messages.size() - 1);
    if (messages != expect.at("messages"))
        return {false, "messages " + messages.dump() + ", expected " + expect.at("messages").dump()};
    if (finished != expect.at("files").size()) return {false, std::to_string(finished) + " files"};
    for (std::size_t i = 0; i < finished; ++i) {
        const std::string difference =
            DifferenceOf(workshop.Expected(expect.at("files")[i]), workshop.Found("out" + std::to_string(i) + ".dwg"),
                         record.at("approx").get<bool>());
        if (!difference.empty()) return {false, "file " + std::to_string(i) + ": " + difference};
    }
    return {};
}

const zm::vectors::Format kSessions(
    "drawing sessions",
    [](const std::string&, const Json& record) {
        return record.is_object() && record.contains("sessions") && record.contains("template");
    },
    Run);

}  // namespace
