#include "platform/freedesktop/files/program_files.h"

#include <filesystem>
#include <system_error>

namespace brevlin {

std::string programFile(const std::string& name)
{
    std::error_code error;
    const std::filesystem::path own = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path beside = own.parent_path() / name;
    if (std::filesystem::exists(beside, error)) {
        return beside.string();
    }
    const bool isFront = name == "brevlin";
    return (own.parent_path() / (isFront ? BREVLIN_FRONT_FOLDER : BREVLIN_OTHERS_FOLDER) / name)
        .lexically_normal()
        .string();
}

} // namespace brevlin
