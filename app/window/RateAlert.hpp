#pragma once

#include <QString>
#include <QStringList>

namespace tessaly {

/// Asks the user one thing, and waits for the answer.
///
/// Threads: the main thread, which runs its event loop meanwhile.
class RateAlert {
public:
    /// What runModal() returns. The codes of the buttons follow each other as the buttons do.
    enum ReturnCode : int {
        noAnswer = 0, ///< the program ended before there was one
        firstButton = 1000,
        secondButton = 1001,
        thirdButton = 1002,
    };

    struct Request {
        QString messageText;
        QString informativeText;
        QStringList buttons; ///< their titles, the one that is meant to be pressed first
    };

    RateAlert() = default;
    virtual ~RateAlert() = default;
    RateAlert(const RateAlert &) = delete;
    RateAlert &operator=(const RateAlert &) = delete;
    RateAlert(RateAlert &&) = delete;
    RateAlert &operator=(RateAlert &&) = delete;

    /// Shows the request to the whole program, which takes no other input until it is answered.
    [[nodiscard]] virtual int runModal(const Request &request) = 0;
};

} // namespace tessaly
