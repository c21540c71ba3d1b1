// What the runtime services remember between calls.
#pragma once

#include "zenromath/host.h"

namespace zm::runtime {

struct State {
    Host* host = nullptr;  // null: the console host
    int (*messageBox)(const char*, unsigned int, unsigned int) = nullptr;  // Set_MessageBox_Process
    const char* (*stringTable)(int) = nullptr;                              // SetStringTable
    int (*sendMessage)(CWnd*, unsigned int, UInt64, Int64) = nullptr;      // Set_WindowSendMeassageEx
};

State& state();

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::runtime
