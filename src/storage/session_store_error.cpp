#include "storage/session_store_error.h"

#include <cstddef>
#include <string_view>

namespace brevlin {

std::string SessionStoreError::errorDescription() const
{
    static constexpr std::array<std::string_view, 5> prefixes{
        "无法读取专注记录：", "无法保存专注记录：", "无法删除专注记录：",
        "无法清空专注记录：", "无法更改专注记录：",
    };
    return std::string(prefixes.at(static_cast<std::size_t>(operation))) + underlyingDescription;
}

} // namespace brevlin
