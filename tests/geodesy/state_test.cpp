#include "geodesy/state.h"

#include <gtest/gtest.h>

TEST(State, CanBeResetTwice) {
    zm::geodesy::ResetState();
    zm::geodesy::ResetState();
}
