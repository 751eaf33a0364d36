#pragma once

#include "platform/PreviewPanels.hpp"

#include <QtGlobal>

#include <memory>
#include <string>

namespace tessaly {

class SettingsStore;

/// The way to the one preview panel, which a module of its own draws (see PreviewModule.hpp). The
/// module is loaded when the panel is first asked for, and stays.
///
/// Threads: the main thread. Requires: is destroyed before the QApplication.
/// Errors:  where the module is missing or not ours, the log says so, and the panel never appears.
class LoadedPreviewPanels final : public PreviewPanels {
public:
    /// `modulePath` is absolute. The settings keep the panel's size, and outlive this.
    LoadedPreviewPanels(std::string modulePath, SettingsStore &settings);
    ~LoadedPreviewPanels() override;
    Q_DISABLE_COPY_MOVE(LoadedPreviewPanels)

    /// Where the module of the program that is running lies, by where the program does.
    [[nodiscard]] static std::string modulePathOfProgram();

    [[nodiscard]] bool sharedPreviewPanelExists() const override;
    [[nodiscard]] PreviewPanel &sharedPreviewPanel() override;

    [[nodiscard]] PreviewPanelController *controller() const override { return m_controller; }
    void setController(PreviewPanelController *controller) override;

private:
    std::string m_modulePath;
    SettingsStore &m_settings;
    PreviewPanelController *m_controller = nullptr;
    std::unique_ptr<PreviewPanels> m_panels; ///< the module's; none before the first panel
};

} // namespace tessaly
