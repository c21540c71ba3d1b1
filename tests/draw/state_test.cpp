#include "draw/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::draw::ResetState();
    zm::draw::ResetState();
}
