// The exported interface of config.
#pragma once

#include "zenromath/platform.h"
