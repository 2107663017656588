#pragma once

#include <gtest/gtest.h>

#include <string>

namespace krvcmd::test {

// While it lives, standard output and standard error go to the given descriptors (-1: closed).
class RedirectedStreams {
  public:
    RedirectedStreams(int output, int error);
    ~RedirectedStreams();
    RedirectedStreams(const RedirectedStreams&) = delete;
    RedirectedStreams& operator=(const RedirectedStreams&) = delete;

  private:
    int m_savedOutput;
    int m_savedError;
};

// A file of the test's own for the streams to go to.
class ConsoleStreamsFixture : public testing::Test {
  public:
    ConsoleStreamsFixture();
    ~ConsoleStreamsFixture() override;
    ConsoleStreamsFixture(const ConsoleStreamsFixture&) = delete;
    ConsoleStreamsFixture& operator=(const ConsoleStreamsFixture&) = delete;

  protected:
    std::string FileText() const;

    std::string m_path;
    int m_file = -1;
};

}  // namespace krvcmd::test
