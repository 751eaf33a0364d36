#pragma once

#include "platform/ApplicationLauncher.hpp"

#include <QMetaObject>
#include <QObject>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// Keeps what it was asked to launch. Whatever `isInstalled` says counts as installed.
class FakeApplicationLauncher final : public ApplicationLauncher {
public:
    void launchApplication(std::string_view name) override { launched.emplace_back(name); }

    void askWhetherInstalled(std::string_view /*name*/, std::function<void(bool)> answer) override
    {
        QMetaObject::invokeMethod(
            &m_context, [this, answer = std::move(answer)] { answer(isInstalled); },
            Qt::QueuedConnection);
    }

    std::vector<std::string> launched;
    bool isInstalled = true;

private:
    QObject m_context; ///< answers end with it
};

} // namespace tessaly
