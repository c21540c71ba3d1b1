// The main function of every test program.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

#include "tests/support/family_dirs.h"
#include "tests/support/scratch.h"

int main(int argc, char** argv) {
    // The environment's locale is put in force, so that a suite run under a decimal comma tests just that.
    std::setlocale(LC_ALL, "");
    testing::InitGoogleTest(&argc, argv);
    const zm::test::ScratchDir machine;
    const zm::test::OwnConfigDirectory config(machine.path() / "config");
    return RUN_ALL_TESTS();
}
