#include "config/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::config::ResetState();
    zm::config::ResetState();
}
