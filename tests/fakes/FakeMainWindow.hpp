#pragma once

#include "app/delegate/MainWindow.hpp"

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

    void windowLoaded() override { record("windowLoaded"); }
    void historyStoreUpdated() override { record("historyStoreUpdated"); }
    void reloadHistoryDelete(const std::optional<std::string> &scanKey) override
    {
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
