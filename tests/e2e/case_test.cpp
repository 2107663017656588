#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/e2e/case_file.h"
#include "tests/e2e/expect_outcome.h"
#include "tests/e2e/program.h"

namespace e2e {
namespace {

class CaseTest : public testing::Test {
  public:
    explicit CaseTest(Case expected) : m_case(std::move(expected)) {}

    void TestBody() override {
        if (IsWindowsProgram() && !m_case.notOnWindows.empty()) {
            GTEST_SKIP() << "Not on Windows: " << m_case.notOnWindows;
        }
        for (const CommandLine& line : m_case.commandLines) {
            SCOPED_TRACE("krvcmd " + line.text);
            e2e::Run run = m_case.run;
            run.words = line.words;
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

// The files of a folder that have the extension, in order.
std::set<std::filesystem::path> FilesIn(const std::filesystem::path& folder, const char* extension) {
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == extension) files.insert(entry.path());
    }
    return files;
}

GoldenTexts ReadGoldenTexts() {
    GoldenTexts texts;
    for (const std::filesystem::path& path : FilesIn(KRVCMD_E2E_GOLDEN, ".txt"))
        texts[path.stem().string()] = ReadFile(path);
    return texts;
}

// A suite per file, named after it; a test per case, named after its sentence.
void RegisterCases(const std::filesystem::path& path, const GoldenTexts& goldenTexts) {
    const std::string suite = CamelCase(path.stem().string());
    std::set<std::string> names;
    for (const Case& entry : ReadCases(ReadFile(path), goldenTexts)) {
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
    const e2e::GoldenTexts goldenTexts = e2e::ReadGoldenTexts();
    for (const std::filesystem::path& path : e2e::FilesIn(KRVCMD_E2E_CASES, ".case")) {
        try {
            e2e::RegisterCases(path, goldenTexts);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", path.string().c_str(), error.what());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
