// How the library of its own gets its script and where its record goes.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <sstream>

#include "tests/fake_library/fake_library.h"
#include "tests/fake_library/script.h"

namespace krvfake {
namespace {

// Says what is wrong and ends the program: a test must not go on with half a script.
[[noreturn]] void GiveUp(const std::string& what) {
    std::fprintf(stderr, "scripted client library: %s\n", what.c_str());
    std::fflush(stderr);
    std::_Exit(70);
}

using File = std::shared_ptr<std::FILE>;

File OpenRecord(const char* path) {
    std::FILE* const opened = std::fopen(path, "ab");
    if (opened == nullptr) GiveUp(std::string("cannot write ") + path);
    return {opened, &std::fclose};
}

FakeLibrary::Sink RecordInto(const char* path) {
    // Opened a fourth time: the first three may have got the numbers of standard streams that the
    // program was started without, and what it prints must not land in the record.
    const std::array<File, 3> standardStreams = {OpenRecord(path), OpenRecord(path), OpenRecord(path)};
    // Every line is on its way before the call goes on, so a killed program leaves a true record.
    return [file = OpenRecord(path)](const std::string& line) {
        std::fprintf(file.get(), "%s\n", line.c_str());
        std::fflush(file.get());
    };
}

void ReadScript(FakeLibrary& library, const char* path) {
    const std::ifstream file(path, std::ios::binary);
    if (!file) GiveUp(std::string("cannot read ") + path);
    std::ostringstream script;
    script << file.rdbuf();
    try {
        RunScript(library, script.str());
    } catch (const std::exception& error) {
        GiveUp(error.what());
    }
}

}  // namespace

void Prepare(FakeLibrary& library) {
    const char* const log = std::getenv("KRVFAKE_LOG");
    library.RecordTo(log == nullptr ? FakeLibrary::Sink() : RecordInto(log));
    const char* const script = std::getenv("KRVFAKE_SCRIPT");
    if (script != nullptr) ReadScript(library, script);
}

}  // namespace krvfake
