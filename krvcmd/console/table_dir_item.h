#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "krvcmd/console/table_string_item.h"

namespace Ostrel::UI::Console {

// A directory path with backslashes.
class CTableDirItem final : public CTableStringItem {
  public:
    using CTableStringItem::CTableStringItem;

    std::size_t RenderInto(std::string& out, std::uint32_t width) const override;
};

}  // namespace Ostrel::UI::Console
