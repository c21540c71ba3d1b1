// A host that shows nothing, for reading a file whose faults are reported in another way.
#pragma once

#include <stdexcept>
#include <string>

#include "zenromath/host.h"

namespace zm::tool::symbols {

/// In force from construction to destruction. Questions are answered No; an end of the process becomes an exception.
class QuietHost : public Host {
 public:
    QuietHost() : m_previous(SetHost(this)) {}
    ~QuietHost() override { SetHost(m_previous); }
    QuietHost(const QuietHost&) = delete;
    QuietHost& operator=(const QuietHost&) = delete;

    int ShowBox(const char* text, const char*, unsigned int type) override {
        m_message = text;
        return (type & 0xF) == MB_YESNO ? IDNO : IDOK;
    }
    void Beep() override {}
    [[noreturn]] void EndProcess(int) override { throw std::runtime_error("the library ends the process"); }

    /// The last text that would have been shown, GBK; empty if none.
    const std::string& message() const { return m_message; }

 private:
    Host* m_previous;
    std::string m_message;
};

}  // namespace zm::tool::symbols
