#pragma once

#include "platform/PreviewPanels.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// A preview panel without a window, which counts what is done to it and keeps what it would show.
class FakePreviewPanel final : public PreviewPanel {
public:
    explicit FakePreviewPanel(PreviewPanelController *const &controller) : m_controller(controller)
    {
    }

    [[nodiscard]] bool isVisible() const override { return m_isVisible; }
    void makeKeyAndOrderFront() override
    {
        ++m_frontCount;
        if (std::exchange(m_isVisible, true)) {
            return;
        }
        if (m_controller != nullptr && m_controller->acceptsPreviewPanelControl(*this)) {
            m_inControl = m_controller;
            m_inControl->beginPreviewPanelControl(*this);
        }
        reloadData();
    }
    void makeKeyWindow() override { ++m_keyCount; }
    void orderOut() override
    {
        ++m_outCount;
        m_isVisible = false;
        endControl();
    }
    void endControl()
    {
        if (m_inControl != nullptr) {
            std::exchange(m_inControl, nullptr)->endPreviewPanelControl(*this);
        }
    }

    [[nodiscard]] PreviewPanelDelegate *delegate() const override { return m_delegate; }
    void setDelegate(PreviewPanelDelegate *delegate) override { m_delegate = delegate; }
    [[nodiscard]] PreviewPanelDataSource *dataSource() const override { return m_dataSource; }
    void setDataSource(PreviewPanelDataSource *dataSource) override { m_dataSource = dataSource; }

    [[nodiscard]] std::size_t currentPreviewItemIndex() const override { return m_index; }
    void setCurrentPreviewItemIndex(std::size_t index) override { m_index = index; }
    void reloadData() override
    {
        ++m_reloadCount;
        m_unlistedItem.clear();
        m_items.clear();
        if (m_dataSource == nullptr) {
            return;
        }
        for (std::size_t i = 0; i < m_dataSource->numberOfPreviewItemsInPreviewPanel(); ++i) {
            m_items.push_back(m_dataSource->previewItemAtIndex(i));
        }
    }

    void showUnlistedItem(const std::string &url) override { m_unlistedItem = url; }

    /// The items as of the last reload.
    [[nodiscard]] const std::vector<std::string> &items() const { return m_items; }
    /// What is shown in place of them; empty when one of them is.
    [[nodiscard]] const std::string &unlistedItem() const { return m_unlistedItem; }

    [[nodiscard]] int frontCount() const { return m_frontCount; }
    [[nodiscard]] int keyCount() const { return m_keyCount; }
    [[nodiscard]] int outCount() const { return m_outCount; }
    [[nodiscard]] int reloadCount() const { return m_reloadCount; }

private:
    PreviewPanelController *const &m_controller;
    PreviewPanelController *m_inControl = nullptr;
    PreviewPanelDelegate *m_delegate = nullptr;
    PreviewPanelDataSource *m_dataSource = nullptr;
    std::size_t m_index = 0;
    std::vector<std::string> m_items;
    std::string m_unlistedItem;
    bool m_isVisible = false;
    int m_frontCount = 0;
    int m_keyCount = 0;
    int m_outCount = 0;
    int m_reloadCount = 0;
};

/// The way to a panel of the fake kind.
class FakePreviewPanels final : public PreviewPanels {
public:
    [[nodiscard]] bool sharedPreviewPanelExists() const override { return m_panel.has_value(); }
    [[nodiscard]] FakePreviewPanel &sharedPreviewPanel() override
    {
        ++m_askedCount;
        return m_panel ? *m_panel : m_panel.emplace(m_controller);
    }

    [[nodiscard]] PreviewPanelController *controller() const override { return m_controller; }
    void setController(PreviewPanelController *controller) override
    {
        if (m_panel && controller != m_controller) {
            m_panel->endControl();
        }
        m_controller = controller;
    }

    /// How often the panel was asked for; a test that asks counts too.
    [[nodiscard]] int askedCount() const { return m_askedCount; }

private:
    PreviewPanelController *m_controller = nullptr;
    std::optional<FakePreviewPanel> m_panel;
    int m_askedCount = 0;
};

} // namespace tessaly
