#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace embedded {

// A descriptor of this process, closed with the object. Not on Windows, as everything in this file.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    // -1 when there is none.
    int Get() const { return m_number; }
    void Close();

  private:
    int m_number = -1;
};

// Takes over the descriptor and moves it above those of the standard streams, which may be closed. Throws
// std::system_error.
Descriptor AboveStandardStreams(int number);

// How a program starts.
struct ChildSettings {
    std::string program;                 // a path, or a name that the PATH leads to; no shell sees it
    std::vector<std::string> arguments;  // without the name of the program
    // Descriptors of this process, above those of the standard streams; -1: /dev/null.
    int input = -1;
    int output = -1;
    int errors = -1;
    int passed = -1;  // becomes descriptor 3; -1: none
    // "NAME=value"; nothing: the environment of this process.
    std::optional<std::vector<std::string>> environment;
};

struct ChildEnd {
    int status = -1;  // the exit status; -1: it is not known
    int signal = 0;   // that ended the program; 0: none
};

// A program that runs beside this one. It has a session of its own, so that no terminal belongs to it and no
// key interrupts it; signals mean what they usually do, and no other files are open. The owner waits for it.
class ChildProcess {
  public:
    // Throws std::system_error.
    explicit ChildProcess(ChildSettings settings);

    // Nothing when the program goes on for longer than that. Once it has ended, the end is known for ever.
    std::optional<ChildEnd> WaitForEnd(std::chrono::milliseconds patience);

    // Does nothing to a program that is known to have ended.
    void Signal(int signal) const;

  private:
    int m_process = -1;
    std::optional<ChildEnd> m_end;
};

}  // namespace embedded
