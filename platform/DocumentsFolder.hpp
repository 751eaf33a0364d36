#pragma once

#include "platform/Interface.hpp"

#include <string>

namespace tessaly {

/// The folder in which the application keeps its own files, the history and the scans. Only the
/// user can read it.
///
/// Threads: any.
class DocumentsFolder : public Interface {
public:
    /// The folder's absolute path, as bytes and without a slash at its end. The folder is made when
    /// it is missing; when that fails (the reason goes to the log), the path is answered all the
    /// same, and writing there will fail.
    [[nodiscard]] virtual std::string path() = 0;
};

} // namespace tessaly
