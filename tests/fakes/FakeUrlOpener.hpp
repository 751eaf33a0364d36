#pragma once

#include "platform/UrlOpener.hpp"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// Keeps what it was asked to open.
class FakeUrlOpener final : public UrlOpener {
public:
    void openUrl(std::string_view url) override { opened.emplace_back(url); }

    void canOpenUrl(std::string_view url, std::function<void(bool)> answer) override
    {
        asked.emplace_back(url);
        m_answer = std::move(answer);
    }

    /// What the last question of canOpenUrl() is answered. Throws std::bad_function_call, which
    /// fails the test, when nobody asked.
    void answer(bool canOpen) { std::exchange(m_answer, nullptr)(canOpen); }

    std::vector<std::string> opened;
    std::vector<std::string> asked; ///< whether they can be opened

private:
    std::function<void(bool)> m_answer;
};

} // namespace tessaly
