#pragma once

#include "platform/SettingsStore.hpp"

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace tessaly {

/// Settings in memory. Records what was changed and flushed, not what was read.
class FakeSettingsStore final : public SettingsStore {
public:
    /// The calls so far, in order: "setInteger KEY NUMBER", "setText KEY TEXT",
    /// "setData KEY COUNT bytes", "remove KEY", "flush"; "flush!" is one that failed. A default
    /// that is set counts as "setInteger"; one that is not needed as nothing.
    [[nodiscard]] std::vector<std::string> log() const
    {
        const std::lock_guard lock(m_mutex);
        return m_log;
    }
    void clearLog()
    {
        const std::lock_guard lock(m_mutex);
        m_log.clear();
    }

    /// From now on, until told otherwise.
    void setFlushFails(bool fails)
    {
        const std::lock_guard lock(m_mutex);
        m_flushFails = fails;
    }

    /// Another process stores an integer, which shows after the next flush that does not fail,
    /// unless this one has a value for the key that is more than a default.
    void storeElsewhere(std::string_view key, std::int64_t value)
    {
        const std::lock_guard lock(m_mutex);
        m_storedElsewhere.insert_or_assign(std::string(key), value);
    }

    /// Whether something was changed since the last flush that did not fail.
    [[nodiscard]] bool hasPendingChanges() const
    {
        const std::lock_guard lock(m_mutex);
        return m_hasPendingChanges;
    }

    [[nodiscard]] bool hasKey(std::string_view key) const override
    {
        const std::lock_guard lock(m_mutex);
        return m_values.contains(key);
    }
    [[nodiscard]] std::int64_t integer(std::string_view key) const override
    {
        return valueAs<std::int64_t>(key).value_or(0);
    }
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override
    {
        return valueAs<std::string>(key);
    }
    [[nodiscard]] std::optional<Data> data(std::string_view key) const override
    {
        return valueAs<Data>(key);
    }

    void setInteger(std::string_view key, std::int64_t value) override
    {
        set("setInteger", key, std::to_string(value), value);
    }
    void setDefault(std::string_view key, std::int64_t value) override
    {
        if (!hasKey(key)) {
            setInteger(key, value);
            const std::lock_guard lock(m_mutex);
            m_pendingDefaults.emplace(key);
        }
    }
    void setText(std::string_view key, std::string_view value) override
    {
        set("setText", key, std::string(value), std::string(value));
    }
    void setData(std::string_view key, std::span<const std::byte> value) override
    {
        set("setData", key, std::to_string(value.size()) + " bytes",
            Data(value.begin(), value.end()));
    }
    void remove(std::string_view key) override
    {
        const std::lock_guard lock(m_mutex);
        m_log.push_back("remove " + std::string(key));
        if (const auto found = m_values.find(key); found != m_values.end()) {
            m_values.erase(found);
            m_pendingDefaults.erase(std::string(key));
            m_hasPendingChanges = true;
        }
    }

    bool flush() override
    {
        const std::lock_guard lock(m_mutex);
        m_log.emplace_back(m_flushFails ? "flush!" : "flush");
        if (m_flushFails) {
            return false;
        }
        for (const auto &[key, value] : m_storedElsewhere) {
            if (m_pendingDefaults.contains(key)) {
                m_values.insert_or_assign(key, value);
            } else {
                m_values.try_emplace(key, value);
            }
        }
        m_storedElsewhere.clear();
        m_pendingDefaults.clear();
        m_hasPendingChanges = false;
        return true;
    }

private:
    using Value = std::variant<std::int64_t, std::string, Data>;

    template <typename Type>
    [[nodiscard]] std::optional<Type> valueAs(std::string_view key) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_values.find(key);
        const auto *value = found != m_values.end() ? std::get_if<Type>(&found->second) : nullptr;
        return value != nullptr ? std::optional(*value) : std::nullopt;
    }

    void set(const std::string &call, std::string_view key, const std::string &shown, Value value)
    {
        const std::lock_guard lock(m_mutex);
        m_log.push_back(call + ' ' + std::string(key) + ' ' + shown);
        m_values.insert_or_assign(std::string(key), std::move(value));
        m_pendingDefaults.erase(std::string(key));
        m_hasPendingChanges = true;
    }

    mutable std::mutex m_mutex;
    std::map<std::string, Value, std::less<>> m_values;
    std::map<std::string, std::int64_t> m_storedElsewhere;
    std::set<std::string> m_pendingDefaults;
    std::vector<std::string> m_log;
    bool m_flushFails = false;
    bool m_hasPendingChanges = false;
};

} // namespace tessaly
