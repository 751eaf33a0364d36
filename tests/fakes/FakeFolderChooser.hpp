#pragma once

#include "platform/FolderChooser.hpp"

#include <stdexcept>
#include <utility>
#include <vector>

namespace tessaly {

/// A chooser without a dialog, which answers when the test says.
class FakeFolderChooser final : public FolderChooser {
public:
    struct Asked {
        QWidget *window;
        Request request;
    };

    void chooseFolder(QWidget &window, const Request &request, Answer answer) override
    {
        m_asked.push_back({&window, request});
        if (isOpen()) {
            m_refused.push_back(std::move(answer));
        } else {
            m_answer = std::move(answer);
        }
    }

    /// The requests so far, in order, those included that came while a dialog was open.
    [[nodiscard]] const std::vector<Asked> &asked() const { return m_asked; }

    /// Whether a request waits for its answer.
    [[nodiscard]] bool isOpen() const { return m_answer != nullptr; }

    /// The user confirms with this folder, or cancels. What was asked in the meantime has its
    /// answer before. Throws std::logic_error, which fails the test, when nobody asked.
    void answer(const std::optional<std::string> &folder)
    {
        if (!isOpen()) {
            throw std::logic_error("nobody has asked for a folder");
        }
        for (const Answer &refused : std::exchange(m_refused, {})) {
            refused(std::nullopt);
        }
        std::exchange(m_answer, nullptr)(folder);
    }

private:
    std::vector<Asked> m_asked;
    std::vector<Answer> m_refused;
    Answer m_answer;
};

} // namespace tessaly
