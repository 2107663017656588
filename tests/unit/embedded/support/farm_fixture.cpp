#include "tests/unit/embedded/support/farm_fixture.h"

#include <cstdlib>
#include <random>
#include <string>

namespace embedded_test {
namespace {

std::filesystem::path NewFolder() {
    std::random_device random;
    while (true) {
        std::filesystem::path folder =
            std::filesystem::temp_directory_path() / ("krvsim-test-" + std::to_string(random()));
        if (std::filesystem::create_directory(folder)) return folder;
    }
}

}  // namespace

FarmHome::FarmHome() : m_folder(NewFolder()) {
    SetEnvironment("KRVSIM_HOME", m_folder.string().c_str());
}

FarmHome::~FarmHome() {
    SetEnvironment("KRVSIM_HOME", nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

}  // namespace embedded_test
