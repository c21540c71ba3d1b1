// GBK to and from UTF-8. The bytes inside the library are GBK; only its edges convert.
#pragma once

#include "zenromath/gbk.h"  // IWYU pragma: export
