#include "preview/QtPreviewPanels.hpp"

namespace tessaly {

QtPreviewPanel &QtPreviewPanels::sharedPreviewPanel()
{
    if (!m_panel) {
        m_panel = std::make_unique<QtPreviewPanel>(m_controller, m_settings);
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
