#pragma once

#include "platform/VolumeService.hpp"

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// Volumes that a test makes up, mounted below "/Volumes/". Answers wait until answer() is called.
class FakeVolumeService final : public VolumeService {
public:
    [[nodiscard]] std::unique_ptr<VolumeEnumerator> enumerator() override
    {
        return std::make_unique<Enumerator>(entries);
    }

    [[nodiscard]] std::string pathOf(std::string_view name) const override
    {
        return "/Volumes/" + std::string(name);
    }

    void readInformation(std::vector<std::string> paths, Answer answer, LateFigures late) override
    {
        questions.emplace_back(std::move(paths), std::move(answer));
        lateFigures.push_back(std::move(late));
    }

    void unmountAndEject(std::string_view path) override { ejected.emplace_back(path); }

    void unmount(std::string_view path) override
    {
        if (whileUnmounting) {
            whileUnmounting();
        }
        const std::scoped_lock lock(m_lock);
        m_unmounted.emplace_back(path);
    }

    void setRefusalListener(std::function<void(const std::string &path)> refused) override
    {
        refusalListener = std::move(refused);
    }

    void setChangeListener(std::function<void()> changed) override
    {
        listener = std::move(changed);
    }

    /// Answers the oldest question that is open from `information`.
    void answer()
    {
        auto [paths, answer] = std::move(questions.front());
        questions.erase(questions.begin());
        std::vector<VolumeInformation> found;
        for (const std::string &path : paths) {
            const auto at = information.find(path);
            found.push_back(at == information.end() ? VolumeInformation{} : at->second);
        }
        answer(std::move(found));
    }

    [[nodiscard]] std::vector<std::string> unmounted() const
    {
        const std::scoped_lock lock(m_lock);
        return m_unmounted;
    }

    /// The entries in their order, an entry's contents ("parent/child") right after it.
    std::vector<std::string> entries;
    std::map<std::string, VolumeInformation> information; ///< by path
    std::vector<std::pair<std::vector<std::string>, Answer>> questions;
    std::vector<LateFigures> lateFigures; ///< of all questions, also those that were answered
    std::vector<std::string> ejected;
    std::function<void()> listener;
    std::function<void(const std::string &path)> refusalListener;
    /// Called by unmount(), on its thread. To be set before the first one.
    std::function<void()> whileUnmounting;

private:
    class Enumerator final : public VolumeEnumerator {
    public:
        explicit Enumerator(std::vector<std::string> entries) : m_entries(std::move(entries)) {}

        [[nodiscard]] std::optional<std::string> next() override
        {
            if (m_next == m_entries.size()) {
                return std::nullopt;
            }
            return m_entries[m_next++];
        }

        void skipDescendants() override
        {
            const std::string parent = m_entries[m_next - 1] + '/';
            while (m_next < m_entries.size() && m_entries[m_next].starts_with(parent)) {
                ++m_next;
            }
        }

    private:
        std::vector<std::string> m_entries;
        std::size_t m_next = 0;
    };

    mutable std::mutex m_lock;
    std::vector<std::string> m_unmounted;
};

} // namespace tessaly
