#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "tools/expectations/facts.h"

namespace embedded::tools {

// One line of a file of expectations.
struct Expectation {
    int line = 0;      // one-based
    std::string text;  // the line itself
    // Nothing where it holds; else what is the case instead.
    std::function<std::optional<std::string>(const Facts&)> check;
};

// Reads lines such as
//   volume 33 label "Sales 2005"
//   slot MyBox 2 1 empty
//   calls format 1
// and throws ToolFailure with every line that is invalid, each as "NAME:LINE: why".
std::vector<Expectation> ReadExpectations(std::istream& input, const std::string& name);
std::vector<Expectation> ReadExpectationFile(const std::string& file);

struct ExpectationResult {
    int line = 0;
    std::string text;
    std::optional<std::string> failure;  // what is the case instead
};
// "FILE:3: slot MyBox 2 1 empty: it is full"
std::string FailureText(const std::string& file, const ExpectationResult& result);

std::vector<ExpectationResult> CheckExpectations(const std::vector<Expectation>& expectations,
                                                 const Facts& facts);

}  // namespace embedded::tools
