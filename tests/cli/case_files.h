// What a golden run has to leave behind.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ei4::test {

/// Checks one line of a case's `files` (its grammar is in README.md) in the folder `work`.
/// Returns the name of the file that the line is about; adds to `faults` what is wrong.
std::string checkFile(const std::string& line, const std::filesystem::path& work,
                      const std::filesystem::path& inputs, std::vector<std::string>& faults);

std::string readText(const std::filesystem::path& path);

}  // namespace ei4::test
