#pragma once

#include "platform/FileUrl.hpp"
#include "platform/FolderBookmarks.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

namespace tessaly {

/// Bookmarks in memory. Every "file:" URL names a folder until it is marked as gone.
class FakeFolderBookmarks final : public FolderBookmarks {
public:
    /// Run when the access to a folder is started with success, or stopped, by whatever thread.
    std::function<void()> whenStarted = [] {};
    std::function<void()> whenStopped = [] {};
    std::function<void()> whenResolved = [] {};

    /// A folder that is gone has no bookmarks; those it had do not resolve until it is back.
    void setGone(std::string_view url, bool isGone = true)
    {
        const std::lock_guard lock(m_mutex);
        if (isGone) {
            m_gone.insert(std::string(url));
        } else {
            m_gone.erase(std::string(url));
        }
    }

    /// How often the access to a URL was started with success, and how often it was stopped, be it
    /// that it was started or not.
    [[nodiscard]] int startCount(std::string_view url) const
    {
        const std::lock_guard lock(m_mutex);
        return count(m_starts, url);
    }
    [[nodiscard]] int stopCount(std::string_view url) const
    {
        const std::lock_guard lock(m_mutex);
        return count(m_stops, url);
    }
    /// How often it was started and not stopped yet.
    [[nodiscard]] int accessCount(std::string_view url) const
    {
        const std::lock_guard lock(m_mutex);
        return count(m_accesses, url);
    }

    [[nodiscard]] std::optional<Data> makeBookmark(std::string_view url) override
    {
        const std::lock_guard lock(m_mutex);
        if (!isFolder(url)) {
            return std::nullopt;
        }
        const std::string text = std::string(mark) + std::string(url);
        const auto bytes = std::as_bytes(std::span(text));
        return Data(bytes.begin(), bytes.end());
    }

    [[nodiscard]] std::optional<std::string> resolve(std::span<const std::byte> data) override
    {
        whenResolved();
        const std::lock_guard lock(m_mutex);
        const std::string_view text(reinterpret_cast<const char *>(data.data()), data.size());
        if (!text.starts_with(mark) || !isFolder(text.substr(mark.size()))) {
            return std::nullopt;
        }
        return std::string(text.substr(mark.size()));
    }

    bool startAccess(std::string_view url) override
    {
        const std::lock_guard lock(m_mutex);
        if (!isFolder(url)) {
            return false;
        }
        ++m_starts[std::string(url)];
        ++m_accesses[std::string(url)];
        whenStarted();
        return true;
    }

    void stopAccess(std::string_view url) override
    {
        const std::lock_guard lock(m_mutex);
        ++m_stops[std::string(url)];
        int &accesses = m_accesses[std::string(url)];
        accesses = std::max(accesses - 1, 0);
        whenStopped();
    }

private:
    using Counts = std::map<std::string, int, std::less<>>;

    static constexpr std::string_view mark = "bookmark ";

    [[nodiscard]] static int count(const Counts &counts, std::string_view url)
    {
        const auto found = counts.find(url);
        return found != counts.end() ? found->second : 0;
    }

    [[nodiscard]] bool isFolder(std::string_view url) const
    {
        return pathOfFileUrl(url).has_value() && !m_gone.contains(url);
    }

    mutable std::mutex m_mutex;
    std::set<std::string, std::less<>> m_gone;
    Counts m_starts;
    Counts m_stops;
    Counts m_accesses;
};

} // namespace tessaly
