// The library's process-wide state under Python: one caller at a time, messages as warnings, stops as exceptions.
#pragma once

#include <pybind11/pybind11.h>

#include <mutex>
#include <string>
#include <vector>

namespace zm::python {

/// Text of the library (GBK) as Python's; what is no GBK becomes the replacement character.
pybind11::str FromLibrary(const char* text);
/// Python's text for the library. Throws ValueError, naming the character, where GBK lacks one.
std::string ToLibrary(const std::string& utf8);

/// The library for one caller: others wait, without holding up Python. What the library says meanwhile becomes
/// warnings of the category zenromath.LibraryWarning when Close is called, and the end of the process that it asks for
/// the exception zenromath.LibraryError.
class Guard {
 public:
    /// Waits until no other caller has the library.
    Guard();
    /// Messages that nobody asked for by Close are dropped: an exception is on its way.
    ~Guard();
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    /// Raises the warnings. Throws where Python turns them into errors.
    void Close();

 private:
    std::unique_lock<std::recursive_mutex> m_lock;
};

/// The class zenromath.LibraryError, borrowed.
PyObject* LibraryErrorType();

/// The exceptions, the warning category and the host.
void AddLibrary(pybind11::module_& module);

}  // namespace zm::python
