#include "python/core/library.h"

#include <cstring>
#include <stdexcept>
#include <utility>

#include "zenromath/gbk.h"
#include "zenromath/host.h"

namespace zm::python {

namespace py = pybind11;

namespace {

/// What EndProcess throws: Python's process goes on.
struct LibraryStop : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Collects what the library says. Questions are answered No, as where nobody is there to ask.
class PythonHost : public Host {
 public:
    int ShowBox(const char* text, const char*, unsigned int type) override {
        m_messages.emplace_back(text != nullptr ? text : "");
        const unsigned int buttons = type & 0xFU;
        return buttons == MB_OK ? IDOK : IDNO;
    }
    void Beep() override {}
    [[noreturn]] void EndProcess(int status) override {
        std::string why = m_messages.empty() ? std::string() : gbk::ToUtf8(m_messages.back()) + "; ";
        m_messages.clear();
        throw LibraryStop(why + "the library asked to end the process with status " + std::to_string(status));
    }
    std::vector<std::string> TakeMessages() { return std::exchange(m_messages, {}); }

 private:
    std::vector<std::string> m_messages;  // GBK
};

PythonHost& TheHost() {
    static PythonHost host;
    return host;
}

std::recursive_mutex& TheMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

PyObject* warningCategory = nullptr;
PyObject* errorType = nullptr;

}  // namespace

py::str FromLibrary(const char* text) {
    return py::str(gbk::ToUtf8(text != nullptr ? text : ""));
}

std::string ToLibrary(const std::string& utf8) {
    int lost = 0;
    std::string text = gbk::FromUtf8(utf8, &lost);
    if (lost > 0)
        throw py::value_error("\"" + utf8 + "\" has " + std::to_string(lost) +
                              " characters that the code page GBK lacks; leave them out or replace them");
    return text;
}

Guard::Guard() : m_lock(TheMutex(), std::defer_lock) {
    const py::gil_scoped_release others;
    m_lock.lock();
}

Guard::~Guard() {
    TheHost().TakeMessages();
}

void Guard::Close() {
    constexpr int kCaller = 1;  // of the module's function
    for (const std::string& message : TheHost().TakeMessages())
        if (PyErr_WarnEx(warningCategory, gbk::ToUtf8(message).c_str(), kCaller) != 0) throw py::error_already_set();
}

PyObject* LibraryErrorType() {
    return errorType;
}

void AddLibrary(py::module_& module) {
    static py::exception<LibraryStop> error(module, "LibraryError", PyExc_RuntimeError);
    error.attr("__doc__") = "The library met a fault after which it does not go on, such as a missing symbol library.";
    errorType = error.ptr();
    warningCategory = PyErr_NewExceptionWithDoc(
        "zenromath.LibraryWarning", "What the library shows in a message box elsewhere.", PyExc_UserWarning, nullptr);
    module.add_object("LibraryWarning", py::reinterpret_borrow<py::object>(warningCategory));
    SetHost(&TheHost());
    module.add_object("_restore_host", py::capsule([]() { SetHost(nullptr); }));
}

}  // namespace zm::python
