#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/unit/embedded/support/farm_fixture.h"
#include "tools/krvsim/tool.h"

namespace embedded_test {

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

// Runs krvsim within the test program, on farms in a folder of the test.
class ToolFixture : public FarmFixture {
  protected:
    // Expects success without a remark; returns the output.
    static std::string Done(const std::vector<std::string>& words) {
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    // Expects a failure without output; returns the message.
    static std::string Failed(const std::vector<std::string>& words) { return Message(words, 1); }
    static std::string WrongUsage(const std::vector<std::string>& words) { return Message(words, 2); }

    std::string WriteFile(const char* name, const std::string& content) const {
        const std::filesystem::path file = m_home.GetFolder() / name;
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }

    // A layout without its first line, which names the server.
    static std::string Body(const std::string& layout) { return layout.substr(layout.find('\n') + 1); }

  private:
    static std::string Message(const std::vector<std::string>& words, int status) {
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, status) << result.out << result.err;
        EXPECT_EQ(result.out, "");
        return result.err;
    }
};

}  // namespace embedded_test
