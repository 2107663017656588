#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace embedded::attached {

enum class ErrorKind {
    NotFound,      // no such host, target or device file
    NotPermitted,  // wrong password, or no right to open a device file
    Unreachable,   // nobody answers there
    Lost,          // the connection or the device went away: whether the command was carried out is not known
    TimedOut,      // the same, after the time limit
    Reserved,      // another host has reserved the device
    Attention,     // the device has changed; the command was not carried out
    Refused,       // the device refused the command or could not carry it out
    BadAnswer,     // the device's answer contradicts itself, the standard, or what was asked
};

// Sense key, additional sense code and qualifier (SPC-4, 4.5).
struct SenseCode {
    uint8_t key = 0;
    uint8_t asc = 0;
    uint8_t ascq = 0;

    bool operator==(const SenseCode&) const = default;
};

// The text is one sentence without a full stop, for the operator; it holds printable characters only.
struct Error {
    ErrorKind kind = ErrorKind::Refused;
    std::string text;
    std::optional<SenseCode> sense;  // what the device said, when it said anything
};

struct Nothing {};

// A value, or why there is none.
template <typename Value>
class [[nodiscard]] Result {
  public:
    Result(Value value) : m_content(std::move(value)) {}
    Result(Error error) : m_content(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<Value>(m_content); }

    // Only when there is a value.
    Value& operator*() { return std::get<Value>(m_content); }
    const Value& operator*() const { return std::get<Value>(m_content); }
    Value* operator->() { return &std::get<Value>(m_content); }
    const Value* operator->() const { return &std::get<Value>(m_content); }

    // Only when there is none.
    const Error& GetError() const { return std::get<Error>(m_content); }

  private:
    std::variant<Value, Error> m_content;
};

}  // namespace embedded::attached
