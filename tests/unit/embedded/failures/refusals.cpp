#include "tests/unit/embedded/failures/refusals.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <new>
#include <stdexcept>

namespace embedded_test {
namespace {

struct Watch {
    bool isOn = false;
    Resource resource = Resource::Memory;
    size_t firstRefused = 0;
    size_t lastRefused = 0;
    size_t requests = 0;
};

constinit Watch watch;

bool Refuses(Resource resource) {
    if (!watch.isOn || watch.resource != resource) return false;
    ++watch.requests;
    return watch.requests >= watch.firstRefused && watch.requests <= watch.lastRefused;
}

bool RefusesFile() {
    const bool refuses = Refuses(Resource::Files);
    if (refuses) errno = EIO;
    return refuses;
}

// ---- What the database allocates

constinit sqlite3_mem_methods usualMemory{};

void* DatabaseMalloc(int size) {
    return Refuses(Resource::Memory) ? nullptr : usualMemory.xMalloc(size);
}

void* DatabaseRealloc(void* memory, int size) {
    return Refuses(Resource::Memory) ? nullptr : usualMemory.xRealloc(memory, size);
}

// ---- What the database asks of the system

int Open(const char* path, int flags, int mode) {
    return RefusesFile() ? -1 : open(path, flags, mode);
}
int Truncate(int file, off_t size) {
    return RefusesFile() ? -1 : ftruncate(file, size);
}
// Of what it is used for, only taking a lock once can fail in a way that is worth a test: a lock that is
// never to be had is what another process may cause, and takes the ten seconds that the service waits.
int Control(int file, int command, void* argument) {
    const bool takesLock =
        command == F_SETLK && static_cast<const struct flock*>(argument)->l_type != F_UNLCK;
    const bool canFail = takesLock && watch.firstRefused == watch.lastRefused;
    return canFail && RefusesFile() ? -1 : fcntl(file, command, argument);
}
ssize_t Read(int file, void* bytes, size_t count) {
    return RefusesFile() ? -1 : read(file, bytes, count);
}
ssize_t ReadAt(int file, void* bytes, size_t count, off_t place) {
    return RefusesFile() ? -1 : pread(file, bytes, count, place);
}
ssize_t Write(int file, const void* bytes, size_t count) {
    return RefusesFile() ? -1 : write(file, bytes, count);
}
ssize_t WriteAt(int file, const void* bytes, size_t count, off_t place) {
    return RefusesFile() ? -1 : pwrite(file, bytes, count, place);
}
void* Map(void* wish, size_t size, int protection, int flags, int file, off_t place) {
    return RefusesFile() ? MAP_FAILED : mmap(wish, size, protection, flags, file, place);
}

template <typename Function>
void Replace(sqlite3_vfs& system, const char* name, Function function) {
    // A name that this build of the database does not have is not an error.
    (void)system.xSetSystemCall(&system, name, reinterpret_cast<sqlite3_syscall_ptr>(function));
}

}  // namespace

void TakeTheDatabasesPlaceOfResources() {
    if (sqlite3_config(SQLITE_CONFIG_GETMALLOC, &usualMemory) != SQLITE_OK)
        throw std::runtime_error("no memory");
    sqlite3_mem_methods grudging = usualMemory;
    grudging.xMalloc = &DatabaseMalloc;
    grudging.xRealloc = &DatabaseRealloc;
    if (sqlite3_config(SQLITE_CONFIG_MALLOC, &grudging) != SQLITE_OK) throw std::runtime_error("not first");
    sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
    if (system == nullptr || system->xSetSystemCall == nullptr) throw std::runtime_error("no system calls");
    Replace(*system, "open", &Open);
    Replace(*system, "ftruncate", &Truncate);
    Replace(*system, "fcntl", &Control);
    Replace(*system, "read", &Read);
    Replace(*system, "pread", &ReadAt);
    Replace(*system, "pread64", &ReadAt);
    Replace(*system, "write", &Write);
    Replace(*system, "pwrite", &WriteAt);
    Replace(*system, "pwrite64", &WriteAt);
    Replace(*system, "mmap", &Map);
}

Refusals::Refusals(Resource resource, size_t number, Extent extent) {
    watch = {true, resource, number, extent == Extent::Once ? number : std::numeric_limits<size_t>::max(), 0};
}

Refusals::~Refusals() {
    watch.isOn = false;
}

size_t Refusals::Requests() {
    return watch.requests;
}

namespace {

void* Allocate(size_t size) noexcept {
    return Refuses(Resource::Memory) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace
}  // namespace embedded_test

void* operator new(size_t size) {
    return embedded_test::AllocateOrThrow(size);
}
void* operator new[](size_t size) {
    return embedded_test::AllocateOrThrow(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return embedded_test::Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return embedded_test::Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
