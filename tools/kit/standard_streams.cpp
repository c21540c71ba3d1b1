#include "tools/kit/standard_streams.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr std::size_t kBlock = 65536;
constexpr int kOutput = 1, kErrors = 2;

constexpr char kStandardOutput[] = "/dev/stdout";

int g_output = -1;  // standard output as it was; -1 while it is where it was
fs::path g_holder;  // the output that has it

#ifdef _WIN32
int Duplicate(int file) {
    return _dup(file);
}
bool Replace(int file, int by) {
    return _dup2(by, file) == 0;
}
int Write(int file, const char* bytes, std::size_t count) {
    return _write(file, bytes, static_cast<unsigned>(count));
}
void MakeBinary(std::FILE* file) {
    _setmode(_fileno(file), _O_BINARY);
}
void MakeBinary(int file) {
    _setmode(file, _O_BINARY);
}
#else
int Duplicate(int file) {
    return ::dup(file);
}
bool Replace(int file, int by) {
    return ::dup2(by, file) >= 0;
}
ssize_t Write(int file, const char* bytes, std::size_t count) {
    return ::write(file, bytes, count);
}
void MakeBinary(std::FILE*) {}
void MakeBinary(int) {}
#endif

// Calls take with each block of stdin.
template <typename Take>
void ReadBlocks(Take take) {
    MakeBinary(stdin);
    char block[kBlock];
    std::size_t count = 0;
    for (; (count = std::fread(block, 1, sizeof block, stdin)) > 0; CheckStop()) take(block, count);
    CheckStop();
    if (std::ferror(stdin) != 0) throw Failure(kNoInput, Phrase("-: stdin cannot be read: {0}.", SystemError(errno)));
}

}  // namespace

std::string StreamArgument(const std::string& argument) {
    const bool stream = argument.size() > 2 && argument.compare(0, 2, "-.") == 0 &&
                        std::isalpha(static_cast<unsigned char>(argument[2])) != 0;
    return stream ? kStandardOutput + argument.substr(1) : argument;
}

bool IsStandardOutput(const fs::path& target) {
    return target == "-" || (target.parent_path() / target.stem()) == kStandardOutput;
}

void KeepStandardOutput(const fs::path& target) {
    if (g_output >= 0 && g_holder != target)
        throw Failure(kUsage,
                      Phrase("{0}: standard output takes one output, and {1} has it; give the other one a file.",
                             target.string(), g_holder.string()));
    if (g_output >= 0) return;
    std::fflush(stdout);
    const int output = Duplicate(kOutput);
    if (output < 0 || !Replace(kOutput, kErrors))
        throw Failure(kNoOutput, Phrase("{0}: standard output is not open: {1}.", target.string(), SystemError(errno)));
    MakeBinary(output);
    g_output = output;
    g_holder = target;
}

void SendToStandardOutput(const fs::path& target, const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    char block[kBlock];
    while (in.read(block, sizeof block), in.gcount() > 0) {
        const auto count = static_cast<std::size_t>(in.gcount());
        for (std::size_t done = 0; done < count;) {
            const auto written = Write(g_output, block + done, count - done);
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0)
                throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", target.string(), SystemError(errno)));
            done += static_cast<std::size_t>(written);
        }
    }
    if (!in.eof())
        throw Failure(kNoOutput, Phrase("{0}: cannot be read again: {1}.", file.string(), SystemError(errno)));
}

InputFile::InputFile(const fs::path& name) : m_path(name) {
    if (name != "-") return;
    m_folder = std::make_unique<PrivateFolder>();
    m_path = m_folder->path() / "stdin";
    std::ofstream out(m_path, std::ios::binary);
    ReadBlocks([&](const char* block, std::size_t count) { out.write(block, static_cast<std::streamsize>(count)); });
    out.close();
    if (!out) throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", m_path.string(), SystemError(errno)));
}

InputFile::~InputFile() = default;
InputFile::InputFile(InputFile&&) noexcept = default;

std::string ReadStandardInput(std::size_t limit) {
    std::string bytes;
    ReadBlocks([&](const char* block, std::size_t count) {
        bytes.append(block, count);
        if (bytes.size() > limit)
            throw Failure(kNoInput, Phrase("-: stdin holds more than {0} MiB; that is not such a file.", limit >> 20));
    });
    return bytes;
}

}  // namespace zm::tool
