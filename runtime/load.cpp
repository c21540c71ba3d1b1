// The work of the library at load, in its order. Only the shared library carries this source.
#include "runtime/profile/project.h"
#include "zenromath/runtime.h"

namespace {

struct ProjectFilesAtLoad {
    ProjectFilesAtLoad() { zm::runtime::StartProjectFiles(); }
};

ProjectFilesAtLoad g_projectFiles;
CZenroMathApp g_application;

}  // namespace
