// vector_runner: runs recorded calls, from files or whole directories of them.
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/support/family_dirs.h"
#include "tests/support/scratch.h"
#include "tests/vector_runner/registry.h"

namespace fs = std::filesystem;

namespace {

struct Totals {
    long passed = 0;
    long failed = 0;
    long skipped = 0;
    long expected = 0;  // failures that are on the list of those
};

// Records that are known to fail on the system of this run: "FILE:LINE | reason", one a line, "#" before a remark.
class ExpectedFailures {
 public:
    /// False where the file cannot be read.
    bool Read(const char* path) {
        std::ifstream in(path);
        for (std::string line; std::getline(in, line);)
            if (const auto bar = line.find(" | "); bar != std::string::npos && line[0] != '#')
                m_places.insert(line.substr(0, bar));
        return in.eof();
    }
    /// Whether a record is on the list; it is taken off.
    bool Take(const std::string& place) { return m_places.erase(place) > 0; }
    const std::set<std::string>& left() const { return m_places; }

 private:
    std::set<std::string> m_places;
};
ExpectedFailures g_expected;

constexpr long kMaxShown = 200;  // failures named for each file

void RunFile(const fs::path& path, bool knownOnly, Totals& totals) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::printf("%s: cannot be read\n", path.string().c_str());
        ++totals.failed;
        return;
    }
    std::string text;
    long line = 0;
    long shown = 0;
    while (std::getline(in, text)) {
        ++line;
        if (text.empty()) continue;
        zm::vectors::Outcome outcome;
        bool known = true;
        try {
            const auto record = zm::vectors::Json::parse(text);
            outcome = zm::vectors::RunRecord(path.filename().string(), path.parent_path().string(), record, known);
            if (!outcome.passed && record.contains("name"))
                outcome.message = record["name"].dump() + ": " + outcome.message;
            if (!outcome.passed && record.contains("id"))
                outcome.message = record["id"].dump() + ": " + outcome.message;
            if (!outcome.passed && record.contains("f")) outcome.message = record["f"].dump() + ": " + outcome.message;
        } catch (const std::exception& error) {
            outcome = {false, error.what()};
        }
        const std::string place = path.filename().string() + ":" + std::to_string(line);
        if (!outcome.passed && g_expected.Take(place)) {
            ++totals.expected;
        } else if (outcome.passed) {
            ++totals.passed;
        } else if (!known && knownOnly) {
            ++totals.skipped;
        } else {
            ++totals.failed;
            if (++shown <= kMaxShown)
                std::printf("%s:%ld: %s\n", path.filename().string().c_str(), line, outcome.message.c_str());
        }
    }
    if (shown > kMaxShown) std::printf("%s: %ld more failures\n", path.filename().string().c_str(), shown - kMaxShown);
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    bool knownOnly = false;
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--known-only") == 0) {
            knownOnly = true;
        } else if (std::strcmp(argv[i], "--expected-failures") == 0 && i + 1 < argc) {
            if (!g_expected.Read(argv[++i])) {
                std::fprintf(stderr, "vector_runner: %s: cannot be read\n", argv[i]);
                return 2;
            }
        } else if (fs::is_directory(argv[i])) {
            for (const auto& entry : fs::directory_iterator(argv[i]))
                if (entry.path().extension() == ".jsonl") files.push_back(fs::absolute(entry.path()));
        } else if (fs::is_regular_file(argv[i])) {
            files.push_back(fs::absolute(argv[i]));
        } else {
            std::fprintf(stderr, "vector_runner: %s: no such file or directory\n", argv[i]);
            return 2;
        }
    }
    if (files.empty()) {
        std::fprintf(
            stderr,
            "usage: vector_runner [--known-only] FILE_OR_DIRECTORY...\n"
            "Runs every record of the .jsonl files. With --known-only records of functions that no\n"
            "handler knows are skipped; without it they count as failures. --expected-failures names a list of\n"
            "records that must fail.\n");
        return 2;
    }
    std::sort(files.begin(), files.end());
    const zm::test::ScratchDir machine;
    const zm::test::OwnConfigDirectory config(machine.path() / "config");
    Totals totals;
    for (const fs::path& file : files) RunFile(file, knownOnly, totals);
    for (const std::string& place : g_expected.left()) {
        std::printf("%s: passes, though it is on the list of expected failures, or was not run\n", place.c_str());
        ++totals.failed;
    }
    if (totals.expected > 0) std::printf("%ld failed as listed\n", totals.expected);
    if (totals.skipped > 0)
        std::printf("%ld passed, %ld failed, %ld skipped\n", totals.passed, totals.failed, totals.skipped);
    else
        std::printf("%ld passed, %ld failed\n", totals.passed, totals.failed);
    return totals.failed == 0 && totals.passed > 0 ? 0 : 1;
}
