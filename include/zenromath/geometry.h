// The exported interface of geometry.
#pragma once

#include "zenromath/platform.h"
