#include "tools/rehearsal/output_tee_windows.h"

#include <atomic>
#include <optional>
#include <string_view>
#include <thread>

#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

bool IsConsole(HANDLE handle) {
    DWORD ignored = 0;
    return GetConsoleMode(handle, &ignored) != 0;
}

}  // namespace

class OutputTee::Channel {
  public:
    Channel(HANDLE target, RecordedOutput& record) : m_target(target), m_record(record) {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        if (CreatePipe(&m_reading, &m_writing, &inherited, 0) == 0)
            throw ToolFailure("cannot record the output");
        (void)SetHandleInformation(m_reading, HANDLE_FLAG_INHERIT, 0);
    }
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    ~Channel() {
        Finish();
        CloseWriting();
        (void)CloseHandle(m_reading);
    }

    HANDLE GetHandle() const { return m_writing; }

    void Start() {
        CloseWriting();
        m_thread.emplace([this] { Pass(); });
    }

    void Finish() {
        if (!m_thread.has_value()) return;
        m_isStopped = true;
        m_thread->join();
        m_thread.reset();
    }

  private:
    void CloseWriting() {
        if (m_writing != nullptr) (void)CloseHandle(m_writing);
        m_writing = nullptr;
    }

    void Pass() {
        constexpr DWORD kPause = 5;  // milliseconds
        std::array<char, 65536> block{};
        while (true) {
            const bool isStopped = m_isStopped;
            DWORD available = 0;
            if (PeekNamedPipe(m_reading, nullptr, 0, nullptr, &available, nullptr) == 0) return;
            if (available == 0 && isStopped) return;
            if (available == 0) {
                Sleep(kPause);
                continue;
            }
            DWORD count = 0;
            if (ReadFile(m_reading, block.data(), static_cast<DWORD>(block.size()), &count, nullptr) == 0)
                return;
            m_record.Add(std::string_view(block.data(), count));
            Write(block.data(), count);
        }
    }

    void Write(const char* bytes, DWORD length) const {
        while (length > 0) {
            DWORD written = 0;
            if (WriteFile(m_target, bytes, length, &written, nullptr) == 0 || written == 0) return;
            bytes += written;
            length -= written;
        }
    }

    HANDLE m_target;
    RecordedOutput& m_record;
    HANDLE m_reading = nullptr;
    HANDLE m_writing = nullptr;
    std::atomic<bool> m_isStopped = false;
    std::optional<std::thread> m_thread;
};

OutputTee::OutputTee(RecordedOutput& record) {
    constexpr std::array<DWORD, 2> kStreams{STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    for (size_t index = 0; index < kStreams.size(); ++index) {
        const HANDLE target = GetStdHandle(kStreams[index]);
        if (target == nullptr || target == INVALID_HANDLE_VALUE || IsConsole(target)) continue;
        m_channels[index] = std::make_unique<Channel>(target, record);
    }
}

OutputTee::~OutputTee() = default;

HANDLE OutputTee::GetHandle(DWORD stream) const {
    const auto& channel = m_channels[stream == STD_OUTPUT_HANDLE ? 0 : 1];
    return channel == nullptr ? GetStdHandle(stream) : channel->GetHandle();
}

void OutputTee::Start() {
    for (const auto& channel : m_channels) {
        if (channel != nullptr) channel->Start();
    }
}

void OutputTee::Finish() {
    for (const auto& channel : m_channels) {
        if (channel != nullptr) channel->Finish();
    }
}

}  // namespace embedded::tools
