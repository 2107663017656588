// krvsim as a test runs it: words in, what it writes and its exit status out.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/unit/embedded/support/farm_home.h"
#include "tools/krvsim/tool.h"

namespace simulator_test {

struct ToolResult {
    int status = 0;
    std::string out;
    std::string err;
};

inline ToolResult RunKrvsim(const std::vector<std::string>& words) {
    std::stringstream out;
    std::stringstream err;
    const int status = embedded::tools::RunTool(words, {out, err});
    return {status, out.str(), err.str()};
}

class ToolTest : public FarmTest {
  protected:
    // Runs it and expects it to succeed in silence but for its output.
    static std::string Done(const std::vector<std::string>& words) {
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    // Expects a refusal; returns what it says.
    static std::string Refused(const std::vector<std::string>& words) {
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, 1) << result.out;
        EXPECT_EQ(result.out, "");
        return result.err;
    }

    static std::string WrongUsage(const std::vector<std::string>& words) {
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, 2) << result.out << result.err;
        EXPECT_EQ(result.out, "");
        return result.err;
    }

    std::string WriteFile(const char* name, const std::string& content) const {
        const std::filesystem::path file = m_home.GetFolder() / name;
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }

    // A layout without its first line, which names the server.
    static std::string Body(const std::string& layout) { return layout.substr(layout.find('\n') + 1); }
};

}  // namespace simulator_test
