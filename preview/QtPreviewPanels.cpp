#include "preview/QtPreviewPanels.hpp"

namespace tessaly {

QtPreviewPanel &QtPreviewPanels::sharedPreviewPanel()
{
    // Made at the first use: most runs of the program show no preview.
    if (!m_panel) {
        m_panel = std::make_unique<QtPreviewPanel>(m_controller, m_settings);
    }
    return *m_panel;
}

void QtPreviewPanels::setController(PreviewPanelController *controller)
{
    // The old controller hears that its control has ended, before the panel would ask the new one.
    if (m_panel && controller != m_controller) {
        m_panel->endControl();
    }
    m_controller = controller;
}

} // namespace tessaly
