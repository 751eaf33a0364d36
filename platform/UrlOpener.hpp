#pragma once

#include "platform/Interface.hpp"

#include <functional>
#include <string_view>

namespace tessaly {

/// Opens addresses in the program that the user has chosen for them.
///
/// Threads: the main thread. Returns at once.
/// Errors:  none reach the caller; they go to the log.
class UrlOpener : public Interface {
public:
    /// Opens the address: "https:" in the browser, "macappstore:" as the page of the same program
    /// in the desktop's software centre. What is no address is not opened.
    virtual void openUrl(std::string_view url) = 0;

    /// Whether something is installed that opens the address. `answer` is called once, later and on
    /// the main thread; never when this is destroyed before.
    virtual void canOpenUrl(std::string_view url, std::function<void(bool)> answer) = 0;
};

} // namespace tessaly
