#include "tests/support/captured_output.h"

#include <gtest/gtest.h>

namespace krvcmd::test {

std::string OutputOf(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

std::string Lines(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (const std::string_view line : lines)
        text.append(line).append(1, '\n');
    return text;
}

}  // namespace krvcmd::test
