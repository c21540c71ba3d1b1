// Pens that leave no mark, each with a handle and a description of its own.
#pragma once

#include "zenromath/platform.h"

namespace zm::win32 {

/// A pen of GDI that the system shares with no other. Required: the system's CreatePen gives one stock pen for all null
/// pens, which forgets width and colour; the description stays as it was given.
/// \return null where GDI makes no pen
HPEN CreateNullPen(const LOGPEN& description);

/// The description of a pen that CreateNullPen made; null for all other objects.
const LOGPEN* NullPenDescription(HGDIOBJ pen);

/// To be called before an object is deleted.
void ForgetNullPen(HGDIOBJ pen);

/// Selects a pen into a device context of the system. For a pen that CreateNullPen made it selects the stock null pen, so
/// that what leaves no mark does not depend on how a system draws.
/// \return the pen that was selected before, as it was given here
HPEN SelectPen(HDC dc, HPEN pen);

}  // namespace zm::win32
