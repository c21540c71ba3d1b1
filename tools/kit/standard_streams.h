// Standard input and output in the place of a file: "-", and for an output "-.svg" and the like, where the extension
// says the format. A file of that name is reached as "./-.svg".
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace zm::tool {

/// An argument of the command line: "-.svg" becomes "/dev/stdout.svg", since a dash and a letter read as an option.
std::string StreamArgument(const std::string& argument);

/// True for "-" and "/dev/stdout", and for "/dev/stdout" with an extension, under which no system has a file.
bool IsStandardOutput(const std::filesystem::path& target);

/// Keeps standard output for the bytes of this output; what is printed from now on goes to stderr. Throws Failure
/// (kUsage) where another output has it already.
void KeepStandardOutput(const std::filesystem::path& target);

/// Sends the bytes of a file to standard output as it was. Throws Failure (kNoOutput).
void SendToStandardOutput(const std::filesystem::path& target, const std::filesystem::path& file);

class PrivateFolder;

/// An input that is opened by its path, more than once perhaps: "-" is all of stdin, kept in a private file as long as
/// this lives. Throws Failure (kNoInput) where stdin cannot be read, (kNoOutput) where it cannot be kept.
class InputFile {
 public:
    explicit InputFile(const std::filesystem::path& name);
    ~InputFile();
    InputFile(InputFile&&) noexcept;
    const std::filesystem::path& path() const { return m_path; }

 private:
    std::unique_ptr<PrivateFolder> m_folder;
    std::filesystem::path m_path;
};

/// All bytes of stdin. Throws Failure (kNoInput) beyond the limit or where it cannot be read.
std::string ReadStandardInput(std::size_t limit);

}  // namespace zm::tool
