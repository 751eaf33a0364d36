#pragma once

#include "app/window/RateAlert.hpp"

#include <QPointer>

class QWidget;

namespace tessaly {

/// Asks in a box of its own, informational. Escape, and closing the box, stand for the last button.
class RateMessageBox final : public RateAlert {
public:
    /// The box is shown in front of `window`, and is gone with it: that is no answer.
    explicit RateMessageBox(QWidget &window);

    [[nodiscard]] int runModal(const Request &request) override;

private:
    QPointer<QWidget> m_window;
};

} // namespace tessaly
