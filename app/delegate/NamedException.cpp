#include "app/delegate/NamedException.hpp"

#include <utility>

namespace tessaly {

NamedException::NamedException(std::string name, const std::string &reason)
    : std::runtime_error(reason), m_name(std::move(name))
{
}

} // namespace tessaly
