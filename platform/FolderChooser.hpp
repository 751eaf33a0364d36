#pragma once

#include "platform/Interface.hpp"

#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace tessaly {

/// Asks the user for a folder.
///
/// Threads: the main thread, which runs its event loop meanwhile.
class FolderChooser : public Interface {
public:
    struct Request {
        /// Where the user starts: an absolute path, as bytes. When that is no folder, the nearest
        /// one above it will do.
        std::string initialFolder;
        /// What the button that confirms says: "Scan", "Save". UTF-8.
        std::string confirmTitle;
    };
    /// The path of the chosen folder, absolute and as bytes; nothing when the user cancelled.
    using Answer = std::function<void(std::optional<std::string>)>;

    /// Shows a dialog on a window, which takes no other input until the dialog is closed, and
    /// returns at once. One existing folder can be chosen.
    ///
    /// `answer` is called once, on the main thread and not before this has returned; never when the
    /// window or the chooser is destroyed before. While a dialog is open, another request brings
    /// that one to the front, and gets "nothing" for an answer.
    virtual void chooseFolder(QWidget &window, const Request &request, Answer answer) = 0;
};

} // namespace tessaly
