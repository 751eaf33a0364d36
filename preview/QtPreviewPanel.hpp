#pragma once

#include "platform/PreviewPanels.hpp"

#include <QSize>

#include <memory>
#include <string>

namespace tessaly {

class PreviewWindow;
class SettingsStore;

/// The preview panel as a window of the program.
///
/// Keeps the size that the user gave it, if there are settings, under "previewPanelWidth" and
/// "previewPanelHeight".
///
/// Threads: the main thread. Requires: the QApplication lives.
class QtPreviewPanel final : public PreviewPanel {
public:
    /// The controller may change at any time; it is looked at when the panel opens. The settings
    /// outlive the panel; nullptr: none.
    QtPreviewPanel(PreviewPanelController *const &controller, SettingsStore *settings);
    ~QtPreviewPanel() override;
    Q_DISABLE_COPY_MOVE(QtPreviewPanel)

    [[nodiscard]] bool isVisible() const override;
    void makeKeyAndOrderFront() override;
    void makeKeyWindow() override;
    void orderOut() override;

    [[nodiscard]] PreviewPanelDelegate *delegate() const override { return m_delegate; }
    void setDelegate(PreviewPanelDelegate *delegate) override { m_delegate = delegate; }
    [[nodiscard]] PreviewPanelDataSource *dataSource() const override { return m_dataSource; }
    /// What is shown stays, until the next reloadData().
    void setDataSource(PreviewPanelDataSource *dataSource) override { m_dataSource = dataSource; }

    [[nodiscard]] std::size_t currentPreviewItemIndex() const override { return m_index; }
    void setCurrentPreviewItemIndex(std::size_t index) override;
    void reloadData() override;
    void showUnlistedItem(const std::string &url) override;

    /// Tells the controller that its control has ended, if it has any.
    void endControl();

    [[nodiscard]] PreviewWindow &window() const { return *m_window; }

private:
    /// Of the data source; 0 without one.
    [[nodiscard]] std::size_t itemCount() const;
    /// Of what is shown; empty when that is nothing.
    [[nodiscard]] std::string currentUrl() const;
    void page(int step);
    void restoreSize();
    void saveSize();
    void placeOverProgram();

    PreviewPanelController *const &m_controller;
    SettingsStore *m_settings;
    PreviewPanelController *m_inControl = nullptr;
    PreviewPanelDelegate *m_delegate = nullptr;
    PreviewPanelDataSource *m_dataSource = nullptr;
    std::size_t m_index = 0;
    std::string m_unlistedUrl; ///< of what is shown in place of the current item; or empty
    QSize m_savedSize;
    std::unique_ptr<PreviewWindow> m_window;
};

} // namespace tessaly
