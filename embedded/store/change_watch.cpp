#include "embedded/store/change_watch.h"

namespace embedded {
namespace {

constexpr int kHeaderRegion = 0;
constexpr int kRegionSize = 32768;

}  // namespace

void ChangeWatch::Remember() {
    if (m_header == nullptr) {
        sqlite3_file* file = nullptr;
        if (sqlite3_file_control(m_connection, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
            file->pMethods == nullptr || file->pMethods->iVersion < 2) {
            return;
        }
        volatile void* region = nullptr;
        if (file->pMethods->xShmMap(file, kHeaderRegion, kRegionSize, 0, &region) != SQLITE_OK) return;
        m_header = static_cast<const volatile uint32_t*>(region);
        if (m_header == nullptr) return;
    }
    for (size_t word = 0; word < kHeaderWords; ++word)
        m_remembered[word] = m_header[word];
}

bool ChangeWatch::HasChanged() const {
    if (m_header == nullptr) return true;
    for (size_t word = 0; word < kHeaderWords; ++word) {
        if (m_header[word] != m_remembered[word]) return true;
    }
    return false;
}

}  // namespace embedded
