#include "preview/QtPreviewPanels.hpp"

#include <utility>

namespace tessaly {

QtPreviewPanels::QtPreviewPanels(QtPreviewPanel::UrlOpener openUrl, SettingsStore *settings)
    : m_openUrl(std::move(openUrl)), m_settings(settings)
{
}

QtPreviewPanels::~QtPreviewPanels() = default;

QtPreviewPanel &QtPreviewPanels::sharedPreviewPanel()
{
    if (!m_panel) {
        m_panel = std::make_unique<QtPreviewPanel>(m_controller, m_openUrl, m_settings);
    }
    return *m_panel;
}

void QtPreviewPanels::setController(PreviewPanelController *controller)
{
    if (m_panel && controller != m_controller) {
        m_panel->endControl();
    }
    m_controller = controller;
}

} // namespace tessaly
