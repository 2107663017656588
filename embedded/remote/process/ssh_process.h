#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::remote {

// How an attempt to send or to receive ended. Ended: the other side has closed its end.
enum class Transfer { Done, Ended, TimedOut };

// What is left of ssh when it is over.
struct SshEnd {
    int status = -1;   // its exit status; -1: a signal ended it
    std::string text;  // the last of what it wrote to its standard error
};

// The system's ssh, connected by its standard input and output. Nothing that reaches this process from the
// keyboard reaches ssh, and ssh cannot ask the user anything.
class SshProcess {
  public:
    // Starts "ssh" with these arguments, which no shell sees. Throws std::system_error.
    explicit SshProcess(const std::vector<std::string>& arguments);
    SshProcess(const SshProcess&) = delete;
    SshProcess& operator=(const SshProcess&) = delete;
    // Ends ssh when Finish was not called.
    ~SshProcess();

    // Sends all of the bytes within the time.
    Transfer Send(std::string_view bytes, std::chrono::milliseconds limit);

    // Appends what has arrived, at least a byte.
    Transfer Receive(std::string& bytes, std::chrono::milliseconds limit);

    // Closes ssh's input; what it still sends can be received.
    void CloseInput();

    // Closes ssh's input and waits for its end; ends it when that takes longer.
    SshEnd Finish(std::chrono::milliseconds patience);

  private:
    struct Handles;
    std::unique_ptr<Handles> m_handles;
};

}  // namespace embedded::remote
