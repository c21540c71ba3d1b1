#include "zenromath/host.h"

#include <chrono>
#include <cstdlib>
#include <cstring>

#include "platform/default_host.h"
#include "runtime/state.h"

namespace zm {

Host::~Host() = default;

int Host::ShowAppBox(const char* text, unsigned int type, unsigned int) {
    return ShowBox(text, "Zenro Info", type);
}

int Host::GetText(HWND, char* buffer, int size) {
    if (buffer != nullptr && size > 0) buffer[0] = '\0';
    return 0;
}

double Host::Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void Host::EndProcess(int status) {
    std::exit(status);
}

Host& CurrentHost() {
    Host*& host = runtime::state().host;
    if (host == nullptr) host = &platform::DefaultHost();
    return *host;
}

Host* SetHost(Host* host) {
    Host* previous = &CurrentHost();
    runtime::state().host = host;
    return previous;
}

}  // namespace zm
