// The TOML library, compiled into the few files that read layouts.
#pragma once

#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_UNRELEASED_FEATURES 0
#include <toml++/toml.h>
