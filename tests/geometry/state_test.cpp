#include "geometry/state.h"

#include <gtest/gtest.h>

#include "zenromath/geometry.h"

TEST(State, CanBeResetTwice) {
    SetMINI(0.5);
    zm::geometry::ResetState();
    zm::geometry::ResetState();
    EXPECT_EQ(SetMINI(1e-08), 1e-08);
}
