#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/session.h"
#include "tests/fake_library/fake_library.h"
#include "tests/support/command_line.h"

namespace krvcmd::test {

using Calls = std::vector<std::string>;

// A test against the scripted client library: an empty farm to begin with, and everything that is
// program-wide as at the program's start.
class ServiceTest : public testing::Test {
  protected:
    ServiceTest() {
        m_fake.Reset();
        GetSession() = 0;
        GetBannerFlags() = {};
        GetProgramNames() = {"krvcmd", "Carvoline"};
    }

    // Whatever a test is about: sizes, presets and contexts have to be right in every call.
    void TearDown() override { EXPECT_EQ(m_fake.Errors(), Calls{}); }

    krvfake::FakeLibrary& Fake() { return m_fake; }
    krvfake::Farm& Farm() { return m_fake.GetFarm(); }

    // The calls since the last time, which are forgotten.
    Calls TakeCalls() {
        Calls calls = m_fake.Calls();
        EXPECT_EQ(m_fake.Errors(), Calls{});
        m_fake.ForgetCalls();
        return calls;
    }

  private:
    krvfake::FakeLibrary& m_fake = krvfake::FakeLibrary::Instance();
};

}  // namespace krvcmd::test
