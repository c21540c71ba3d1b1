// Which faces of fonts are installed.
#pragma once

#include <set>
#include <string>

#include "zenromath/platform.h"

namespace zm::win32 {

/// The installed faces of a name (empty: of all names) with a set of characters, in the order of their names, without
/// those for text from top to bottom.
///
/// The system is asked once for each name, since that takes milliseconds; what is installed afterwards is seen at the
/// program's next start. More than kKeptFaceLists names are forgotten again.
const std::set<std::wstring>& InstalledFaces(HDC dc, const std::wstring& name, BYTE charset);

constexpr std::size_t kKeptFaceLists = 256;

/// How many times the system has been asked.
int FaceEnumerations();

}  // namespace zm::win32
