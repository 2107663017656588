// Makes a test of every case in cases/*.case: a suite per file, named after it, a test per case,
// named after its sentence.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "tests/e2e/case_file.h"
#include "tests/e2e/expect_outcome.h"
#include "tests/e2e/program.h"
#include "tests/e2e/shell_words.h"
#include "tests/e2e/windows_program.h"

namespace e2e {
namespace {

class CaseTest : public testing::Test {
  public:
    explicit CaseTest(Case expected) : m_case(std::move(expected)) {}

    void TestBody() override {
        if (IsWindowsProgram() && !m_case.notOnWindows.empty()) {
            GTEST_SKIP() << "Not on Windows: " << m_case.notOnWindows;
        }
        for (const std::string& commandLine : m_case.commandLines) {
            SCOPED_TRACE("krvcmd " + commandLine);
            e2e::Run run = m_case.run;
            run.words = SplitShellWords(commandLine);
            ExpectOutcome(m_case, RunProgram(run));
        }
    }

  private:
    Case m_case;
};

// "lists every jukebox" becomes ListsEveryJukebox.
std::string CamelCase(const std::string& sentence) {
    std::string name;
    bool wordBegins = true;
    for (const char c : sentence) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) == 0) {
            wordBegins = true;
            continue;
        }
        name += wordBegins ? static_cast<char>(std::toupper(byte)) : c;
        wordBegins = false;
    }
    return name;
}

std::string ReadFile(const std::filesystem::path& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void RegisterCases(const std::filesystem::path& path) {
    const std::string suite = CamelCase(path.stem().string());
    std::set<std::string> names;
    for (const Case& entry : ReadCases(ReadFile(path))) {
        const std::string name = CamelCase(entry.name);
        if (!names.insert(name).second) throw std::runtime_error("two cases are called " + name);
        testing::RegisterTest(suite.c_str(), name.c_str(), nullptr, nullptr, path.c_str(), entry.line,
                              [entry]() -> CaseTest* { return new CaseTest(entry); });
    }
}

}  // namespace
}  // namespace e2e

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::set<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(KRVCMD_E2E_CASES)) {
        if (entry.path().extension() == ".case") paths.insert(entry.path());
    }
    for (const std::filesystem::path& path : paths) {
        try {
            e2e::RegisterCases(path);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", path.string().c_str(), error.what());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
