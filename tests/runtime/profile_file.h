// A profile file in a folder of its own, for tests.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "runtime/files/files.h"
#include "runtime/profile/profile.h"
#include "runtime/state.h"
#include "tests/support/scratch.h"

namespace zm::test {

class ProfileFile : public testing::Test {
 protected:
    ProfileFile() { zm::runtime::ResetState(); }
    const char* file() const { return m_text.c_str(); }
    const std::filesystem::path& path() const { return m_path; }
    const zm::test::ScratchDir& scratch() const { return m_scratch; }
    std::string Get(const char* section, const char* key) {
        char buffer[256];
        zm::profile::GetString(section, key, "*", buffer, sizeof buffer, file());
        return buffer;
    }
    // Lets the file grow old enough that its stamp tells every further change.
    static void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(40)); }

 private:
    zm::test::ScratchDir m_scratch;
    std::filesystem::path m_path = m_scratch / "设置.ini";
    std::string m_text = zm::files::PathText(m_path);
};

}  // namespace zm::test
