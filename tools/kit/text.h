// Small text helpers of the program: trimming, strict numbers, files, encodings.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace zm::tool {

std::string Trim(std::string_view text);
/// A whole decimal number and nothing else; number stays where the text is none, as in the next one.
bool ReadWhole(std::string_view text, int& number);
/// A finite real number with a decimal point, and nothing else.
bool ReadReal(std::string_view text, double& number);
/// A number in fixed notation, with a decimal point in every locale.
std::string Fixed(double number, int decimals);

/// The bytes of a file, or of stdin for "-". Throws Failure (kNoInput), also where it is larger than the limit.
std::string ReadWholeFile(const std::filesystem::path& path, std::size_t limit);

/// The next line of a file of lines, without its "\n"; false at the end of the file. Throws Failure (kNoInput) where it
/// cannot be read, and for a line of more than 64 MiB. name: what messages call the file.
bool NextLine(std::FILE* file, const std::string& name, std::string& line);

/// True for a file with a line that begins a symbol (*, a code from 1 to 999) or ends the symbols (*$), and without zero
/// bytes. Throws Failure (kNoInput) where it cannot be read.
bool IsSymbolLibrary(const std::filesystem::path& path);

/// A path from the program's own text, which is UTF-8 on all systems: nothing is left to the system's code page.
std::filesystem::path PathOf(std::string_view utf8);
/// A path as the library wants it: GBK, with an escape for what GBK lacks, and backslashes. Empty if it is too long.
std::string LibraryPath(const std::filesystem::path& path);
/// A path that the library gave, as the system's.
std::filesystem::path FromLibraryPath(const char* path);

/// Text for the library. A letter whose accent GBK lacks becomes the plain letter, anything else that it lacks the
/// replacement; lost counts both.
std::string ToLibraryText(const std::string& utf8, char replacement, int& lost);

}  // namespace zm::tool
