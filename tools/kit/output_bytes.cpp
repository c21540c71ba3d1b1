// What outputs need alike on all systems.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/kit/process.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {

void CheckOutput(const fs::path& target, bool overwrite) {
    const OutputFile probe(target, overwrite);
}

void WriteOutput(const fs::path& target, bool overwrite, const std::string& bytes) {
    const auto failed = [&](int reason) {
        throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", target.string(), SystemError(reason)));
    };
    OutputFile out(target, overwrite);
    std::FILE* file = OpenFile(out.path(), "wb");
    if (file == nullptr) failed(errno);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int reason = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) failed(written ? errno : reason);
    out.Commit();
}

}  // namespace zm::tool
