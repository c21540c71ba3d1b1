// A host of one's own: what the library has to say goes into a log, and questions are answered with yes.
#include <zenromath/gbk.h>
#include <zenromath/host.h>
#include <zenromath/runtime.h>

#include <cstdio>

namespace {

class LoggingHost : public zm::Host {
 public:
    int ShowBox(const char* text, const char* title, unsigned int type) override {
        // Texts are GBK; type holds the buttons in its low digits.
        std::printf("[%s] %s\n", zm::gbk::ToUtf8(title != nullptr ? title : "").c_str(),
                    zm::gbk::ToUtf8(text != nullptr ? text : "").c_str());
        return (type & 0xFU) == MB_YESNO ? IDYES : IDOK;
    }
    void Beep() override {}
};

}  // namespace

int main() {
    LoggingHost host;
    zm::Host* before = zm::SetHost(&host);
    _LMsg("\xB2\xE2\xC1\xBF", nullptr, 0);  // "surveying"
    zm::SetHost(before);                    // the host must not end while it is in force
    return 0;
}
