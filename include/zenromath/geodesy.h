// The exported interface of geodesy.
#pragma once

#include "zenromath/platform.h"
