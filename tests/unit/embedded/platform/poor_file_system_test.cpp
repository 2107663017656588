// Not on Windows: functions of the C library are replaced as only Linux lets programs do. They stand in for a
// file system without hard links, such as FAT, where the first contact of two processes meets.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace {

// While set, the file system knows neither hard links nor a rename that replaces nothing. It is called just
// before a file is renamed.
std::function<void()> g_beforeRename;

}  // namespace

// These stand in for the functions of the C library.
extern "C" {

__attribute__((visibility("default"))) int link(const char* file, const char* place) noexcept {
    if (g_beforeRename == nullptr) return linkat(AT_FDCWD, file, AT_FDCWD, place, 0);
    errno = EPERM;
    return -1;
}

__attribute__((visibility("default"))) int renameat2(int folder, const char* file, int newFolder,
                                                     const char* place, unsigned flags) noexcept {
    if (g_beforeRename == nullptr)
        return static_cast<int>(syscall(SYS_renameat2, folder, file, newFolder, place, flags));
    errno = EINVAL;
    return -1;
}

__attribute__((visibility("default"))) int rename(const char* file, const char* place) noexcept {
    if (g_beforeRename != nullptr) g_beforeRename();
    return renameat(AT_FDCWD, file, AT_FDCWD, place);
}
}

namespace embedded_test {
namespace {

class PoorFileSystem : public FarmFixture {
  protected:
    PoorFileSystem() {
        g_beforeRename = [this] { Compete(); };
    }
    ~PoorFileSystem() override { g_beforeRename = nullptr; }

    int m_renameCount = 0;
    bool m_hasCompeted = false;

  private:
    // What another process does that makes the same farm: it waits for its turn, too, and replaces nothing.
    void Compete() {
        ++m_renameCount;
        const int folder = open(m_home.GetFolder().c_str(), O_RDONLY | O_DIRECTORY);
        if (flock(folder, LOCK_EX | LOCK_NB) == 0 && !std::filesystem::exists(m_home.LocalFarm())) {
            std::ofstream(m_home.LocalFarm()) << "the farm of the other process";
            m_hasCompeted = true;
        }
        close(folder);
    }
};

TEST_F(PoorFileSystem, FirstContactDoesNotReplaceTheFarmOfAnotherProcess) {
    const Client client;
    EXPECT_EQ(m_renameCount, 1) << "the farm gets its place by a rename";
    EXPECT_FALSE(m_hasCompeted) << "a farm was put into the place that was about to be renamed to";
    EXPECT_TRUE(client.GetOpening().ok) << Describe(client.GetOpening());
}

}  // namespace
}  // namespace embedded_test
