#pragma once

#include "app/delegate/MainWindow.hpp"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tessaly {

/// Records what the main window was asked, in order: "windowLoaded", "loadHistoryItem KEY", ….
class FakeMainWindow final : public MainWindow {
public:
    [[nodiscard]] std::vector<std::string> log() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_log;
    }

    /// Called on the thread of each message about the history.
    std::function<void()> onHistoryMessage = [] {};

    void windowLoaded() override { record("windowLoaded"); }
    void historyStoreUpdated() override
    {
        onHistoryMessage();
        record("historyStoreUpdated");
    }
    void reloadHistoryDelete(const std::optional<std::string> &scanKey) override
    {
        onHistoryMessage();
        record("reloadHistoryDelete " + scanKey.value_or("(none)"));
    }
    void loadHistoryItem(const std::string &scanKey) override
    {
        record("loadHistoryItem " + scanKey);
    }
    void scanClicked() override { record("scanClicked"); }

private:
    void record(std::string call)
    {
        const std::scoped_lock lock(m_mutex);
        m_log.push_back(std::move(call));
    }

    mutable std::mutex m_mutex;
    std::vector<std::string> m_log;
};

} // namespace tessaly
