#include "krvcmd/console/writer/console_streams.h"

#include <cerrno>
#include <cstdio>
#include <utility>

namespace Ostrel::UI::Console {
namespace {

std::FILE* FileOf(Stream stream) {
    return stream == Stream::StandardOutput ? stdout : stderr;
}

}  // namespace

void ConsoleStreams::Write(Stream stream, std::string_view text) {
    if (stream == Stream::StandardError) Flush(Stream::StandardOutput);
    if (HasFailed(stream) || text.empty()) return;
    // A short write need not leave a number.
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), FileOf(stream)) != text.size()) NoteFailure(stream, errno);
    // Not every C runtime leaves standard error without a buffer.
    if (stream == Stream::StandardError) Flush(stream);
}

krvcmd::Status ConsoleStreams::Finish() {
    Flush(Stream::StandardOutput);
    m_failed = {};
    return krvcmd::Status::SystemError(static_cast<uint32_t>(std::exchange(m_firstError, 0)));
}

bool ConsoleStreams::HasFailed(Stream stream) const {
    return m_failed[static_cast<size_t>(stream)];
}

void ConsoleStreams::Flush(Stream stream) {
    if (HasFailed(stream)) return;
    errno = 0;
    if (std::fflush(FileOf(stream)) != 0) NoteFailure(stream, errno);
}

void ConsoleStreams::NoteFailure(Stream stream, int error) {
    m_failed[static_cast<size_t>(stream)] = true;
    if (m_firstError == 0 && !Platform::IsBrokenPipe(stream, error))
        m_firstError = Platform::WriteError(error);
}

}  // namespace Ostrel::UI::Console
