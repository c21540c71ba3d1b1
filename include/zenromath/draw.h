// The exported interface of draw.
#pragma once

#include "zenromath/platform.h"
