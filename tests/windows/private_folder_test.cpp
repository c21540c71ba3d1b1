// The folders that zenro makes among the temporary files, beside other processes of it.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tools/kit/output_file.h"

namespace {

namespace fs = std::filesystem;

// Another process removes what it can rename.
TEST(PrivateFolder, CannotBeRenamedWhileItsProcessLives) {
    fs::path place, other;
    {
        const zm::tool::PrivateFolder folder;
        place = folder.path();
        other = place.parent_path() / (place.filename().native() + L".taken");
        EXPECT_TRUE(fs::is_directory(place));
        EXPECT_EQ(MoveFileW(place.c_str(), other.c_str()), 0);
        EXPECT_TRUE(fs::is_directory(place));
    }
    EXPECT_FALSE(fs::exists(place));
    EXPECT_FALSE(fs::exists(other));
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
