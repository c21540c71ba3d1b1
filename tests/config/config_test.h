// What the tests of this folder share: the four directories, a test host, and the state at its start values.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "config/state.h"
#include "runtime/text/gbk.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/config.h"
#include "zenromath/runtime.h"

class ConfigTest : public testing::Test {
 protected:
    ConfigTest() {
        zm::config::ResetState();
        dirs.NameProject("map");
    }
    ~ConfigTest() override { zm::config::ResetState(); }

    static std::string Gbk(const char* utf8) { return zm::gbk::FromUtf8(utf8); }
    void PutProject(const std::string& text) { zm::test::WriteFile(dirs.Project("map.ini"), text); }
    void PutWidths(const std::string& text) { zm::test::WriteFile(dirs.Module("neworv.ini"), text); }
    void PutColors(const std::string& text) { zm::test::WriteFile(dirs.Machine("neworv.ini"), text); }
    void PutNotes(const std::string& text) { zm::test::WriteFile(dirs.Module("Orvnote.cod"), text); }

    zm::test::FamilyDirs dirs;
    zm::test::TestHost host;
};
