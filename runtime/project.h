// The project file state, for the other folders of the library. The exported part is in zenromath/runtime.h.
#pragma once

#include <cstdio>

/// Opens a file of the family: as given if the name has a backslash, then in the project, the module and the ini
/// directory; the first that opens is the result.
///
/// \return the stream, or null after a message. Required: a file found only in the machine directory is opened,
///         closed and not returned, so that directory never serves a file.
FILE* _LFOpen(const char* name, const char* mode);
