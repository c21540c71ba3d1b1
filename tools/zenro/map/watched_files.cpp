#include "tools/zenro/map/watched_files.h"

#include <cpl_error.h>
#include <cpl_vsi.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <system_error>
#include <utility>

#include "tools/kit/exit_codes.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr char kOutputs[] = "/zenro-watched/", kInputs[] = "/zenro-input/";

std::mutex theLock;  // drivers may read and write on threads of their own
std::string theFault;
std::string theInput, theReadFault;  // the file, and the reason

std::string Reason() {
    return std::generic_category().message(errno != 0 ? errno : EIO);
}

void NoteFault() {
    const std::string reason = Reason();
    const std::lock_guard guard(theLock);
    if (theFault.empty()) theFault = reason;
}

// GDAL hands names over without the prefix.
std::string PathOf(const char* name) {
    return std::string("/").append(name);
}

VSILFILE* FileOf(void* file) {
    return static_cast<VSILFILE*>(file);
}

void* Open(void*, const char* name, const char* access) {
    errno = 0;
    VSILFILE* file = VSIFOpenL(PathOf(name).c_str(), access);
    if (file == nullptr && access[0] == 'w') NoteFault();
    return file;
}

size_t Write(void* file, const void* bytes, size_t size, size_t count) {
    errno = 0;
    const size_t written = VSIFWriteL(bytes, size, count, FileOf(file));
    if (written != count) NoteFault();
    return written;
}

// After a fault some drivers read what they could not write and do not look how much there was: that of DXF then looks for
// the end of a line, beyond its buffer if need be. It finds line ends.
size_t Read(void* file, void* bytes, size_t size, size_t count) {
    const size_t read = VSIFReadL(bytes, size, count, FileOf(file));
    if (read < count && !WriteFault().empty())
        std::memset(static_cast<char*>(bytes) + read * size, '\n', (count - read) * size);
    return read;
}

int Done(int result) {
    if (result != 0) NoteFault();
    return result;
}

// What is written after a place that was not reached lies elsewhere.
int Seek(void* file, vsi_l_offset offset, int whence) {
    errno = 0;
    return Done(VSIFSeekL(FileOf(file), offset, whence));
}

int Flush(void* file) {
    errno = 0;
    return Done(VSIFFlushL(FileOf(file)));
}

int Truncate(void* file, vsi_l_offset size) {
    errno = 0;
    return Done(VSIFTruncateL(FileOf(file), size));
}

int Close(void* file) {
    errno = 0;
    return Done(VSIFCloseL(FileOf(file)));
}

// An input with its name, for the report.
struct Input {
    VSILFILE* file;
    std::string name;
};

Input& InputOf(void* input) {
    return *static_cast<Input*>(input);
}

void NoteReadFault(const std::string& name) {
    const std::string reason = Reason();
    const std::lock_guard guard(theLock);
    if (!theReadFault.empty()) return;
    theInput = name;
    theReadFault = reason;
}

// Less than was asked for is the end of the file, or a fault.
size_t ReadInput(void* input, void* bytes, size_t size, size_t count) {
    errno = 0;
    const size_t read = VSIFReadL(bytes, size, count, InputOf(input).file);
    if (read < count && VSIFEofL(InputOf(input).file) == 0) NoteReadFault(InputOf(input).name);
    return read;
}

// Drivers look for files that may or may not be there, and for places that no file has; any other reason is a fault, after
// which they go on as if the file ended or was not there.
bool IsFault(int reason) {
    switch (reason) {
        case 0:
        case EINVAL:
        case EISDIR:
        case ELOOP:
        case ENAMETOOLONG:
        case ENOENT:
        case ENOTDIR:
            return false;
        default:
            return true;
    }
}

void NoteFaultOf(const std::string& name) {
    if (IsFault(errno)) NoteReadFault(name);
}

void* OpenInput(void*, const char* name, const char* access) {
    const std::string path = PathOf(name);
    VSIStatBufL found;
    // A folder opens as a file does, and cannot be read as one.
    const bool folder = VSIStatL(path.c_str(), &found) == 0 && VSI_ISDIR(found.st_mode) != 0;
    if (folder || std::strpbrk(access, "wa+") != nullptr) return nullptr;
    errno = 0;
    VSILFILE* file = VSIFOpenL(path.c_str(), access);
    if (file != nullptr) return new Input{file, path};
    NoteFaultOf(path);
    return nullptr;
}

int SeekInput(void* input, vsi_l_offset offset, int whence) {
    errno = 0;
    const int result = VSIFSeekL(InputOf(input).file, offset, whence);
    if (result != 0) NoteFaultOf(InputOf(input).name);
    return result;
}

// What every driver asks of names, as GDAL answers it.
VSIFilesystemPluginCallbacksStruct* PlainCalls() {
    VSIFilesystemPluginCallbacksStruct* calls = VSIAllocFilesystemPluginCallbacksStruct();
    calls->stat = [](void*, const char* name, VSIStatBufL* stat, int flags) {
        return VSIStatExL(PathOf(name).c_str(), stat, flags);
    };
    calls->read_dir = [](void*, const char* name, int most) { return VSIReadDirEx(PathOf(name).c_str(), most); };
    return calls;
}

void InstallOutputs() {
    VSIFilesystemPluginCallbacksStruct* calls = PlainCalls();
    calls->unlink = [](void*, const char* name) { return VSIUnlink(PathOf(name).c_str()); };
    calls->rename = [](void*, const char* from, const char* to) {
        return VSIRename(PathOf(from).c_str(), PathOf(to).c_str());
    };
    calls->mkdir = [](void*, const char* name, long mode) { return VSIMkdir(PathOf(name).c_str(), mode); };
    calls->rmdir = [](void*, const char* name) { return VSIRmdir(PathOf(name).c_str()); };
    calls->open = Open;
    calls->tell = [](void* file) { return VSIFTellL(FileOf(file)); };
    calls->seek = Seek;
    calls->read = Read;
    calls->eof = [](void* file) { return VSIFEofL(FileOf(file)); };
    calls->write = Write;
    calls->flush = Flush;
    calls->truncate = Truncate;
    calls->close = Close;
    VSIInstallPluginHandler(kOutputs, calls);
    VSIFreeFilesystemPluginCallbacksStruct(calls);
}

// An input is only read: some drivers would write beside it what they found out about it.
void InstallInputs() {
    VSIFilesystemPluginCallbacksStruct* calls = PlainCalls();
    calls->open = OpenInput;
    calls->tell = [](void* input) { return VSIFTellL(InputOf(input).file); };
    calls->seek = SeekInput;
    calls->read = ReadInput;
    calls->eof = [](void* input) { return VSIFEofL(InputOf(input).file); };
    calls->close = [](void* input) {
        const int result = VSIFCloseL(InputOf(input).file);
        delete static_cast<Input*>(input);
        return result;
    };
    VSIInstallPluginHandler(kInputs, calls);
    VSIFreeFilesystemPluginCallbacksStruct(calls);
}

}  // namespace

std::string WatchedName(const std::filesystem::path& path) {
    static std::once_flag once;
    std::call_once(once, InstallOutputs);
    return kOutputs + path.string().substr(1);
}

std::string WatchedInput(const std::filesystem::path& path) {
    static std::once_flag once;
    std::call_once(once, InstallInputs);
    return kInputs + path.string().substr(1);
}

std::string WithPlainNames(std::string text) {
    for (std::size_t at = 0; (at = text.find(kInputs, at)) != std::string::npos;)
        text.replace(at, sizeof kInputs - 1, "/");
    return text;
}

void RefuseReadFault() {
    const std::lock_guard guard(theLock);
    if (theReadFault.empty()) return;
    const std::string reason = std::exchange(theReadFault, {});
    throw Failure(kNoInput, Phrase("{0}: cannot be read: {1}.", theInput, reason));
}

std::string WriteFault() {
    const std::lock_guard guard(theLock);
    return theFault;
}

void ForgetFault() {
    const std::lock_guard guard(theLock);
    theFault.clear();
}

DriverFault::DriverFault() {
    const auto note = [](CPLErr kind, CPLErrorNum, const char* words) {
        auto& first = static_cast<DriverFault*>(CPLGetErrorHandlerUserData())->m_words;
        if (kind >= CE_Failure && first.empty()) first = words;
    };
    CPLErrorReset();
    CPLPushErrorHandlerEx(note, this);
}

DriverFault::~DriverFault() {
    CPLPopErrorHandler();
}

}  // namespace zm::tool
