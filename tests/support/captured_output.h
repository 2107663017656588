#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace krvcmd::test {

// What `action` writes to standard output.
std::string OutputOf(const std::function<void()>& action);

// Lines, each with its line break, so that an expected output stands in the test as it looks.
std::string Lines(std::initializer_list<std::string_view> lines);

}  // namespace krvcmd::test
