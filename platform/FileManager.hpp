#pragma once

#include "platform/Interface.hpp"

#include <string_view>

namespace tessaly {

/// The desktop's file manager, for showing where things are and what they are.
///
/// Paths are absolute and bytes; a slash too many, in the middle or at the end, does no harm.
///
/// Threads: the main thread. The calls return at once, and never block on a file system or on
///          another program.
/// Errors:  none reach the caller; they go to the log. Nothing is shown for what is no such path.
///          For an item that no longer exists, or cannot be looked at, a window of our own says so.
///          Without a file manager something else is shown, as told below.
class FileManager : public Interface {
public:
    /// Shows a window of the item's folder with this one item selected; of "/" the folder itself.
    /// Without a file manager, the folder is opened by whatever opens folders.
    virtual void reveal(std::string_view path) = 0;

    /// Shows a window with what is known about the item: size, kind, dates, permissions. Without a
    /// file manager it is a window of our own.
    virtual void showInformation(std::string_view path) = 0;
};

} // namespace tessaly
