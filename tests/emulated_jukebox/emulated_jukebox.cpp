#include "tests/emulated_jukebox/emulated_jukebox.h"

#include <sys/types.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace embedded::attached {
namespace {

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "emulated jukebox: " << message << '\n';
    std::abort();
}

std::string OutputOf(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) Fail("no process for " + command);
    std::string output;
    std::array<char, 4096> buffer{};
    while (const size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), count);
    if (pclose(pipe) != 0) Fail(command + " failed: " + output);
    while (!output.empty() && output.back() == '\n')
        output.pop_back();
    return output;
}

std::filesystem::path NewFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "jukebox-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) Fail("no folder for it");
    return pattern;
}

}  // namespace

EmulatedJukebox::EmulatedJukebox(const std::string& options)
    : m_folder(NewFolder()), m_address(Run("start", options)) {}

EmulatedJukebox::~EmulatedJukebox() {
    Run("stop");
    std::error_code failure;
    std::filesystem::remove_all(m_folder, failure);
}

std::string EmulatedJukebox::GetDriveAddress(int number) const {
    return m_address.substr(0, m_address.rfind('/') + 1) + std::to_string(number);
}

std::string EmulatedJukebox::GetPortal() const {
    const size_t start = m_address.find("//") + 2;
    return m_address.substr(start, m_address.find('/', start) - start);
}

std::string EmulatedJukebox::GetTarget() const {
    const size_t start = m_address.find('/', m_address.find("//") + 2) + 1;
    return m_address.substr(start, m_address.rfind('/') - start);
}

std::string EmulatedJukebox::Run(const std::string& command, const std::string& words) const {
    return OutputOf(std::string(KRV_EMULATED_JUKEBOX) + " " + command + " '" + m_folder.string() + "' " +
                    words);
}

int EmulatedJukebox::GetProcess() const {
    int process = 0;
    std::ifstream(m_folder / "tgtd.pid") >> process;
    if (process <= 1) Fail("its process is not known");
    return process;
}

void EmulatedJukebox::Freeze() const {
    if (kill(GetProcess(), SIGSTOP) != 0) Fail("it cannot be stopped");
}

void EmulatedJukebox::Thaw() const {
    if (kill(GetProcess(), SIGCONT) != 0) Fail("it cannot go on");
}

}  // namespace embedded::attached
