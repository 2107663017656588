#include <cstdlib>

// This program's texts are UTF-8, whatever the locale of the person who runs it.
[[maybe_unused]] static const int g_locale = setenv("LC_ALL", "C.UTF-8", 1);
