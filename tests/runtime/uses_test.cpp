// A profile that has not changed is not read again.
#include "runtime/uses.h"

#include "tests/runtime/profile_file.h"

namespace {

using Uses = zm::test::ProfileFile;
using namespace zm::uses;

TEST_F(Uses, AProfileIsReadOnceUntilItChanges) {
    const auto reads = [&](int times) {
        counts[profileKept] = counts[profileRead] = 0;
        for (int i = 0; i < times; ++i) Get("a", "k");
        return std::pair(counts[profileRead], counts[profileKept]);
    };
    using Taken = std::pair<std::uint64_t, std::uint64_t>;
    zm::test::WriteFile(path(), "[a]\r\nk=1\r\n");
    Settle();
    EXPECT_EQ(reads(100), Taken(1, 99));
    EXPECT_EQ(reads(100), Taken(0, 100));
    zm::test::WriteFile(path(), "[a]\r\nk=22\r\n");
    Settle();
    EXPECT_EQ(reads(100), Taken(1, 99));
    EXPECT_EQ(Get("a", "k"), "22");
    std::filesystem::remove(path());
    EXPECT_EQ(reads(100), Taken(0, 0));
}

}  // namespace
