#pragma once

#include "platform/PreviewPanels.hpp"
#include "preview/QtPreviewPanel.hpp"

#include <memory>

namespace tessaly {

class SettingsStore;

/// The way to the one preview panel of the program, a window that Qt draws.
///
/// A program that plays sounds and videos in it sets the environment variable QT_MEDIA_BACKEND to
/// "ffmpeg" before it makes its QApplication; see PreviewPlayer.
///
/// Threads: the main thread. Requires: is destroyed before the QApplication.
class QtPreviewPanels final : public PreviewPanels {
public:
    /// See QtPreviewPanel.
    explicit QtPreviewPanels(SettingsStore *settings = nullptr) : m_settings(settings) {}
    Q_DISABLE_COPY_MOVE(QtPreviewPanels)
    ~QtPreviewPanels() override = default;

    [[nodiscard]] bool sharedPreviewPanelExists() const override { return m_panel != nullptr; }
    [[nodiscard]] QtPreviewPanel &sharedPreviewPanel() override;

    [[nodiscard]] PreviewPanelController *controller() const override { return m_controller; }
    void setController(PreviewPanelController *controller) override;

private:
    SettingsStore *m_settings;
    PreviewPanelController *m_controller = nullptr;
    std::unique_ptr<QtPreviewPanel> m_panel;
};

} // namespace tessaly
