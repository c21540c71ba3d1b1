// The main function of the tests of the program. As the program they have the shared library, whose seam for the folder
// of the machine's settings is inside; ctest and the shuffled run give each its own XDG_CONFIG_HOME instead.
#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
    // The program is a process of its own and has the environment's locale; what the tests read and write by themselves
    // has decimal points.
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
