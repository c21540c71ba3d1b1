// What the runtime services remember between calls.
#pragma once

#include <memory>

#include "runtime/files/directory_names.h"
#include "runtime/profile/profile_cache.h"
#include "runtime/profile/project.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::runtime {

struct State {
    Host* host = nullptr;                                                  // null: the console host
    int (*messageBox)(const char*, unsigned int, unsigned int) = nullptr;  // Set_MessageBox_Process
    const char* (*stringTable)(int) = nullptr;                             // SetStringTable
    int (*sendMessage)(CWnd*, unsigned int, UInt64, Int64) = nullptr;      // Set_WindowSendMeassageEx

    TqFileContext project;
    bool projectStarted = false;
    bool moduleSought = false;  // the module directory is looked for once
    files::DirectoryNames directoryNames;
    profile::Cache profiles;
    profile::PendingWrites pendingWrites;

    std::shared_ptr<tqwaitcur> waiting;  // the wait slot; who calls it keeps it alive through the message pump
    bool waitHidden = false;
};

State& state();

/// Sets every remembered value of this folder back to its start value. A wait object ends first, over the host that is
/// in force.
void ResetState();

}  // namespace zm::runtime
