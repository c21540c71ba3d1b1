#include "runtime/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::runtime::ResetState();
    zm::runtime::ResetState();
}
