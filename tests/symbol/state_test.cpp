#include "symbol/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::symbol::ResetState();
    zm::symbol::ResetState();
}
