// The exported interface of dialogs.
#pragma once

#include "zenromath/platform.h"
