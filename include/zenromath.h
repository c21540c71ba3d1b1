// The exported interface of ZenroMath, gathered.
#pragma once

#include "zenromath/config.h"
#include "zenromath/dialogs.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/geodesy.h"
#include "zenromath/geometry.h"
#include "zenromath/runtime.h"
#include "zenromath/sheets.h"
#include "zenromath/symbol.h"
