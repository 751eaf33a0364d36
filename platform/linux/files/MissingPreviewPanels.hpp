#pragma once

#include "platform/PreviewPanels.hpp"

#include <cstddef>
#include <string>

namespace tessaly {

/// The panel where the preview module is missing: it never appears, and asks no controller.
class MissingPreviewPanel final : public PreviewPanel {
public:
    [[nodiscard]] bool isVisible() const override { return false; }
    void makeKeyAndOrderFront() override {}
    void makeKeyWindow() override {}
    void orderOut() override {}

    [[nodiscard]] PreviewPanelDelegate *delegate() const override { return m_delegate; }
    void setDelegate(PreviewPanelDelegate *delegate) override { m_delegate = delegate; }
    [[nodiscard]] PreviewPanelDataSource *dataSource() const override { return m_dataSource; }
    void setDataSource(PreviewPanelDataSource *dataSource) override { m_dataSource = dataSource; }

    [[nodiscard]] std::size_t currentPreviewItemIndex() const override { return m_index; }
    void setCurrentPreviewItemIndex(std::size_t index) override { m_index = index; }
    void reloadData() override {}
    void showUnlistedItem(const std::string & /*url*/) override {}

private:
    PreviewPanelDelegate *m_delegate = nullptr;
    PreviewPanelDataSource *m_dataSource = nullptr;
    std::size_t m_index = 0;
};

/// The way to it.
class MissingPreviewPanels final : public PreviewPanels {
public:
    [[nodiscard]] bool sharedPreviewPanelExists() const override { return true; }
    [[nodiscard]] PreviewPanel &sharedPreviewPanel() override { return m_panel; }
    [[nodiscard]] PreviewPanelController *controller() const override { return m_controller; }
    void setController(PreviewPanelController *controller) override { m_controller = controller; }

private:
    MissingPreviewPanel m_panel;
    PreviewPanelController *m_controller = nullptr;
};

} // namespace tessaly
