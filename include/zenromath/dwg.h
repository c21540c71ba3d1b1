// The exported interface of dwg.
#pragma once

#include "zenromath/platform.h"
