// The TOML library, compiled into the few files that read layouts.
#pragma once

#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_UNRELEASED_FEATURES 0
// Release 3.3 asserts what not every text fulfils ("a = [ }"); behind the assertion it refuses such a text as
// any other that is no TOML.
#define TOML_ASSERT(condition) static_cast<void>(0)
#include <toml++/toml.h>
