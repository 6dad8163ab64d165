#include "app/Resources.h"

namespace fs = std::filesystem;

Resources Resources::beside(const fs::path& programs)
{
    const auto root = programs.parent_path();
    return {programs / "libphonebook.so", programs / "libcorvan-stimulus.so", root / "locale", root / "demo"};
}

Resources Resources::ofProgram()
{
    std::error_code error;
    return beside(fs::read_symlink("/proc/self/exe", error).parent_path());
}
