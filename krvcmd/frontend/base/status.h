#pragma once

#include <cstdint>
#include <string>

namespace krvcmd {

// The program's own system-style error numbers. They do not come from errno: exit statuses are the same on
// every system.
namespace os_code {
inline constexpr uint32_t kNoSuchItem = 2;
inline constexpr uint32_t kInterrupted = 4;
inline constexpr uint32_t kJukeboxUnresolved = 6;
inline constexpr uint32_t kOutOfMemory = 12;
inline constexpr uint32_t kInvalidCommandLine = 22;
}  // namespace os_code

// The result of every operation that can fail, passed by value. It is the only error channel.
class [[nodiscard]] Status {
  public:
    enum class Kind : uint32_t { Success = 0, SystemError = 1, ServiceError = 3 };

    // Success.
    Status() = default;

    // A system-style error with the errno-style number `osCode`; 0 gives success.
    static Status SystemError(uint32_t osCode);

    // An error that the client library reported. It is an error even when `serviceCode` is 0.
    static Status ServiceError(uint32_t serviceCode, std::string message);

    bool IsOk() const { return m_kind == Kind::Success; }
    bool IsServiceError() const { return m_kind == Kind::ServiceError; }
    Kind GetKind() const { return m_kind; }

    // The system code of a system error, else the service code; 0 for success.
    uint32_t Code() const { return m_kind == Kind::SystemError ? m_osCode : m_serviceCode; }

    // The library's error text; empty unless this is a service error.
    const std::string& Message() const { return m_message; }

  private:
    Kind m_kind = Kind::Success;
    uint32_t m_osCode = 0;
    [[maybe_unused]] uint32_t m_reserved = 0;
    uint32_t m_serviceCode = 0;
    std::string m_message;
};

// The first of the two that is an error; success when neither is.
inline const Status& FirstError(const Status& first, const Status& second) {
    return first.IsOk() ? second : first;
}

}  // namespace krvcmd
