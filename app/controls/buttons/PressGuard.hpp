#pragma once

#include <QObject>
#include <QRect>

#include <chrono>
#include <functional>
#include <optional>
#include <set>

class QAbstractButton;
class QPointF;

namespace tessaly {

/// Keeps the second press of a double click from acting on what the first one has brought under the
/// pointer: the next row's button, or the button that took the place of the one that was pressed.
///
/// When a watched button has acted, presses on any watched button are swallowed until the pointer
/// has left the place where that button was, or until holdTime has passed. Keys count as presses.
/// What acts without a press, such as a shortcut or assistive technology, is not held back.
///
/// A key that is held down acts once: neither Space and Return nor the shortcut of a watched button
/// repeat. So an Escape that is held to close a sheet does not go on to press Cancel.
///
/// Threads: the main thread.
class PressGuard final : public QObject {
    Q_OBJECT

public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    static constexpr std::chrono::milliseconds holdTime{500};

    explicit PressGuard(QObject *parent = nullptr);
    ~PressGuard() override;
    Q_DISABLE_COPY_MOVE(PressGuard)

    /// Watches a button for as long as it and this live. Does nothing for one that is watched.
    void watch(QAbstractButton &button);

    /// Replaces the clock, for tests. Monotonic; the steady clock at first.
    void setClock(Clock clock) { m_clock = std::move(clock); }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Where and when a watched button acted.
    struct Hold {
        QRect place; ///< of the button on the screen
        Time since;
    };

    void hold();
    void notePointer(const QPointF &globalPosition);
    [[nodiscard]] bool isHolding();
    [[nodiscard]] bool swallowsKey(QEvent &event);
    [[nodiscard]] bool swallowsPress();

    Clock m_clock = [] { return std::chrono::steady_clock::now(); };
    std::set<const QObject *> m_buttons;
    QRect m_pressedPlace; ///< of the button that was pressed last; it may move when it acts
    std::optional<Hold> m_hold;
    bool m_hasSwallowedPress = false; ///< its release is swallowed, too
    bool m_isKeyRepeating = false;    ///< the key that was pressed last, on any widget
};

} // namespace tessaly
