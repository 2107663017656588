#include "embedded/attached/disc/sparse_file.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace embedded::attached {
namespace {

Error FileError(const char* what) {
    return {ErrorKind::Refused,
            std::string("a copy of blocks in memory cannot be ") + what + ": " + std::strerror(errno),
            {}};
}

}  // namespace

Result<SparseFile> SparseFile::Create(uint64_t size) {
    SparseFile file(memfd_create("disc", MFD_CLOEXEC));
    if (file.m_descriptor < 0) return FileError("made");
    if (ftruncate(file.m_descriptor, static_cast<off_t>(size)) != 0) return FileError("made");
    return file;
}

SparseFile::SparseFile(SparseFile&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

SparseFile& SparseFile::operator=(SparseFile&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

SparseFile::~SparseFile() {
    if (m_descriptor >= 0) close(m_descriptor);
}

Result<uint64_t> SparseFile::GetSize() const {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0) return FileError("measured");
    return static_cast<uint64_t>(status.st_size);
}

Result<Nothing> SparseFile::Write(uint64_t at, Bytes bytes) {
    while (!bytes.empty()) {
        const ssize_t count = pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(at));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return FileError("written");
        bytes = bytes.subspan(static_cast<size_t>(count));
        at += static_cast<uint64_t>(count);
    }
    return Nothing();
}

Result<Nothing> SparseFile::Read(uint64_t at, std::span<uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = pread(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(at));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return FileError("read");
        if (count == 0) break;
        bytes = bytes.subspan(static_cast<size_t>(count));
        at += static_cast<uint64_t>(count);
    }
    std::ranges::fill(bytes, uint8_t{0});
    return Nothing();
}

Result<std::vector<SparseFile::Extent>> SparseFile::ListWritten() const {
    std::vector<Extent> extents;
    off_t at = 0;
    while (true) {
        const off_t start = lseek(m_descriptor, at, SEEK_DATA);
        if (start < 0 && errno == ENXIO) return extents;
        const off_t end = start < 0 ? -1 : lseek(m_descriptor, start, SEEK_HOLE);
        if (end < 0) return FileError("searched");
        extents.push_back({static_cast<uint64_t>(start), static_cast<uint64_t>(end)});
        at = end;
    }
}

}  // namespace embedded::attached
