#include "platform/linux/process/StandardError.hpp"

#include <cerrno>
#include <cstddef>

#include <unistd.h>

namespace tessaly {

void writeToStandardError(std::string_view text) noexcept
{
    const int error = errno;
    while (!text.empty()) {
        const ssize_t count = write(STDERR_FILENO, text.data(), text.size());
        if (count > 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    errno = error;
}

} // namespace tessaly
