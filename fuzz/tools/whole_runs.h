// Whole runs of zenro's verbs on files in a folder of their own, and proof of what they wrote.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tools/zenro/verbs/verbs.h"

namespace zm::fuzz {

/// The folder of this process; settings are looked for in it.
const std::filesystem::path& Folder();

/// Replaces a file of the folder.
void Write(const char* name, const void* data, std::size_t size);
void Write(const char* name, const std::string& text);

/// Runs work, quietly, on files of the folder that outputs name and that are not there before. True where it was done; false
/// where it was refused with a message.
bool Run(const std::vector<const char*>& outputs, const std::function<void(zm::tool::Context&)>& work);

/// Ends the process by a fault unless each output is whole: a drawing that other readers take, the end of a page, of DXF.
void Prove(const std::vector<const char*>& outputs);

}  // namespace zm::fuzz
