// The project file state, for the other folders of the library. The exported part is in zenromath/runtime.h.
#pragma once

#include <cstdio>

namespace zm::runtime {

/// The one project file state: GBK path texts of at most 255 bytes, with backslashes.
struct TqFileContext {
    char currentFile[256] = {};     // base name with the current extension; the file of the _LFGet and _LFWrt calls
    char currentSection[256] = {};  // their section
    char chosenFile[256] = {};      // current file or the fallback of _LFInit; kept for the caller
    char baseName[256] = {};        // full path of the project without its extension
    char projectDirectory[256] = {};
    char moduleDirectory[256] = {};  // empty until first asked for
    char iniDirectory[256] = {};     // empty until first asked for
    char machineDirectory[256] = {};
    int machineUsable = 0;
};

/// The state, started if it was not yet.
TqFileContext& Project();

/// Builds the state and probes the machine directory, as the shared library does at load. Programs that link the
/// folders of the library by themselves may call it at their start; the state else starts at its first use.
void StartProjectFiles();

// What the exported calls do, for callers inside the library that pass constants.
void SetExtension(const char* ext);
int GetInt(int def, const char* key, const char* section);
int GetText(const char* def, char* buffer, int size, const char* key, const char* section);
int WriteInt(int value, const char* key, const char* section);
int WriteText(const char* value, const char* key, const char* section);
const char* WholeName(char* buffer, const char* name, const char* ext, int where);

}  // namespace zm::runtime

/// Opens a file of the family to read it: as given if the name has a separator, then in the project, the module and the
/// ini directory; the first that opens is the result. A mode that also writes opens for reading where write access is
/// refused.
///
/// \return the stream, or null after a message. Required: a file found only in the machine directory is opened,
///         closed and not returned, so that directory never serves a file.
FILE* _LFOpen(const char* name, const char* mode);
