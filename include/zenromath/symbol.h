// The exported interface of symbol.
#pragma once

#include "zenromath/platform.h"
