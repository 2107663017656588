#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace embedded::tools {

// What is wrong with the words that the parser refused, in one line. It depends on neither the parser's
// version nor its wording.
std::string UsageErrorText(const CLI::App& tool, const CLI::Error& error);

// The known word that `word` was probably meant to be; empty if none is near.
std::string NearestWord(const std::string& word, const std::vector<std::string>& known);

}  // namespace embedded::tools
