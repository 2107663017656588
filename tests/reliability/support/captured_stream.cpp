#include "tests/reliability/support/captured_stream.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace krvcmd::reliability {
namespace {

void Require(bool done) {
    if (!done) std::abort();
}

}  // namespace

CapturedStream::CapturedStream(std::FILE* stream)
    : m_stream(stream), m_file(memfd_create("captured", MFD_CLOEXEC)) {
    Require(m_file >= 0);
}

CapturedStream::~CapturedStream() {
    (void)close(m_file);
}

void CapturedStream::Begin() {
    const int descriptor = fileno(m_stream);
    Require(std::fflush(m_stream) == 0);
    m_saved = dup(descriptor);
    Require(m_saved >= 0 && dup2(m_file, descriptor) == descriptor);
}

std::string CapturedStream::End() {
    const int descriptor = fileno(m_stream);
    Require(std::fflush(m_stream) == 0);
    Require(dup2(m_saved, descriptor) == descriptor && close(m_saved) == 0);
    const off_t length = lseek(m_file, 0, SEEK_END);
    Require(length >= 0);
    std::string text(static_cast<size_t>(length), '\0');
    Require(pread(m_file, text.data(), text.size(), 0) == length);
    Require(ftruncate(m_file, 0) == 0 && lseek(m_file, 0, SEEK_SET) == 0);
    return text;
}

}  // namespace krvcmd::reliability
