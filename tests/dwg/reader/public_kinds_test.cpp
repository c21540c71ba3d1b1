// The public header of the reader names each kind of entity with its fields.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "dwg/format/record_layout.h"

namespace {

// Each kind of the table in the comment, with the words that follow it up to the next kinds: those before a number.
std::map<std::string, std::set<std::string>> DocumentedKinds() {
    std::map<std::string, std::set<std::string>> documented;
    std::set<std::string> kinds;
    std::ifstream file(ZM_PUBLIC_READER);
    std::string line;
    while (std::getline(file, line)) {
        if (line.rfind("///     ", 0) != 0) continue;
        for (char& c : line)
            if (std::string("/,;:()").find(c) != std::string::npos) c = ' ';
        std::istringstream words(line);
        bool naming = line[8] != ' ';
        if (naming) kinds.clear();
        for (std::string word; words >> word;) {
            naming = naming && (word.size() > 1 || word < "0" || word > "9");
            if (naming) kinds.insert(word);
            for (const std::string& kind : kinds) documented[kind].insert(word);
        }
    }
    return documented;
}

TEST(PublicReader, NamesEachKindAndEachOfItsFields) {
    auto documented = DocumentedKinds();
    for (const char* attribute : {"ATTDEF", "ATTRIB"})  // "as TEXT, and ..."
        documented[attribute].insert(documented["TEXT"].begin(), documented["TEXT"].end());
    for (const auto& layout : zm::dwg::kKindLayouts) {
        SCOPED_TRACE(layout.name);
        ASSERT_EQ(documented.count(layout.name), 1u);
        const auto& words = documented[layout.name];
        EXPECT_EQ(words.count(std::to_string(layout.points)), 1u);
        for (const auto& field : layout.fields) EXPECT_EQ(words.count(field.name), 1u) << field.name;
        if (zm::dwg::RefersToBlock(layout.kind)) {
            EXPECT_EQ(words.count("block"), 1u);
        }
    }
}

}  // namespace
