// Small text helpers of the program: trimming, strict numbers, files, encodings.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zm::tool {

std::string Trim(std::string_view text);
/// A whole decimal number and nothing else.
bool ReadWhole(std::string_view text, int& number);
/// A finite real number with a decimal point, and nothing else.
bool ReadReal(std::string_view text, double& number);
/// A number in fixed notation, with a decimal point in every locale.
std::string Fixed(double number, int decimals);

/// The bytes of a file. Throws Failure (kNoInput), also where it is larger than the limit.
std::string ReadWholeFile(const std::filesystem::path& path, std::size_t limit);

/// A path as the library wants it: GBK, backslashes. Empty if the path has characters that GBK lacks or is too long.
std::string LibraryPath(const std::filesystem::path& path);
/// A path that the library gave, as the system's.
std::filesystem::path FromLibraryPath(const char* path);

/// Text for the library. A letter whose accent GBK lacks becomes the plain letter, anything else that it lacks the
/// replacement; lost counts both.
std::string ToLibraryText(const std::string& utf8, char replacement, int& lost);

}  // namespace zm::tool
