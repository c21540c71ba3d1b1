// Loaded ahead of a program: the n-th piece of memory that the library or the program itself asks for, once main has
// begun, is refused, n by ZM_FAIL_NEW. What other libraries ask for is theirs to handle. At the end ZM_COUNT_NEW, if set, names a file for the
// number of requests.
#include <dlfcn.h>
#include <link.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

struct Module {
    std::uintptr_t from, to;
};
Module modules[8];
int moduleCount = -1;
long requests = 0;
long refused = -1;

int Note(dl_phdr_info* info, std::size_t, void*) {
    const bool ours = info->dlpi_name[0] == '\0' || std::strstr(info->dlpi_name, "libzenromath.so") != nullptr;
    for (int i = 0; ours && i < info->dlpi_phnum && moduleCount < 8; ++i) {
        const auto& part = info->dlpi_phdr[i];
        if (part.p_type != PT_LOAD || (part.p_flags & PF_X) == 0) continue;
        const std::uintptr_t from = info->dlpi_addr + part.p_vaddr;
        modules[moduleCount++] = {from, from + part.p_memsz};
    }
    return 0;
}

void Report() {
    const char* name = std::getenv("ZM_COUNT_NEW");
    std::FILE* file = name != nullptr ? std::fopen(name, "w") : nullptr;
    if (file == nullptr) return;
    std::fprintf(file, "%ld\n", requests);
    std::fclose(file);
}

void Start() {
    moduleCount = 0;
    dl_iterate_phdr(Note, nullptr);
    const char* number = std::getenv("ZM_FAIL_NEW");
    refused = number != nullptr ? std::atol(number) : -1;
    std::atexit(Report);
}

// Counts a request of ours; true for the one that is refused.
bool Refuse(const void* caller) {
    const auto at = reinterpret_cast<std::uintptr_t>(caller);
    for (int i = 0; i < moduleCount; ++i)
        if (at >= modules[i].from && at < modules[i].to) return ++requests == refused;
    return false;
}

using MainFunction = int (*)(int, char**, char**);
MainFunction programMain = nullptr;

int CountedMain(int argc, char** argv, char** environment) {
    Start();
    return programMain(argc, argv, environment);
}

void* Get(std::size_t size, const void* caller) {
    return Refuse(caller) ? nullptr : std::malloc(size != 0 ? size : 1);
}

}  // namespace

extern "C" int __libc_start_main(MainFunction begin, int argc, char** argv, void (*init)(), void (*fini)(),
                                 void (*end)(), void* stack) {
    programMain = begin;
    using Real = int (*)(MainFunction, int, char**, void (*)(), void (*)(), void (*)(), void*);
    const auto real = reinterpret_cast<Real>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return real(CountedMain, argc, argv, init, fini, end, stack);
}

void* operator new(std::size_t size) {
    if (void* memory = Get(size, __builtin_return_address(0))) return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    if (void* memory = Get(size, __builtin_return_address(0))) return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Get(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Get(size, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
