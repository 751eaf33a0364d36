#include "app/window/ProgramVersion.hpp"

namespace tessaly {

std::string_view programName() noexcept
{
    return "Tessaly";
}

std::string_view programVersion() noexcept
{
    return TESSALY_VERSION; // of CMakeLists.txt
}

} // namespace tessaly
