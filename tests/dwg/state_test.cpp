#include "dwg/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::dwg::ResetState();
    zm::dwg::ResetState();
}
