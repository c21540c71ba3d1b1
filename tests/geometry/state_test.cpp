#include "geometry/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::geometry::ResetState();
    zm::geometry::ResetState();
}
