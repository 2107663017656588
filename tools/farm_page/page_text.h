#pragma once

#include <string_view>

namespace embedded::tools {

// The page without its data, for which kDataMark stands. It is made of page.html, page.css and page.js when
// the build is configured.
std::string_view PageText();

inline constexpr std::string_view kDataMark = "<!--data-->";

}  // namespace embedded::tools
