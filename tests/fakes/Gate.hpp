#pragma once

#include <functional>
#include <future>

namespace tessaly {

/// Holds up the threads that come to it until it is opened, at the latest when it is destroyed.
class Gate {
public:
    Gate() : m_opened(m_opening.get_future().share()) {}
    ~Gate() { open(); }
    Gate(const Gate &) = delete;
    Gate &operator=(const Gate &) = delete;

    void open()
    {
        if (!m_isOpen) {
            m_isOpen = true;
            m_opening.set_value();
        }
    }

    /// What a thread calls to pass. It may outlive the gate.
    [[nodiscard]] std::function<void()> pass() const
    {
        return [opened = m_opened] { opened.wait(); };
    }

private:
    bool m_isOpen = false;
    std::promise<void> m_opening;
    std::shared_future<void> m_opened;
};

} // namespace tessaly
