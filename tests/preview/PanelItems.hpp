#pragma once

#include "platform/FileUrl.hpp"
#include "platform/PreviewPanels.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace tessaly {

/// Feeds a panel with the files at these paths, and counts what the panel asks of it.
class PanelItems final : public PreviewPanelController,
                         public PreviewPanelDataSource,
                         public PreviewPanelDelegate {
public:
    std::vector<std::string> paths;
    bool accepts = true;
    int beginCount = 0;
    int endCount = 0;
    std::vector<PreviewPanelEvent> events;

    [[nodiscard]] bool acceptsPreviewPanelControl(PreviewPanel & /*panel*/) override
    {
        return accepts;
    }
    void beginPreviewPanelControl(PreviewPanel &panel) override
    {
        ++beginCount;
        panel.setDelegate(this);
        panel.setDataSource(this);
    }
    void endPreviewPanelControl(PreviewPanel &panel) override
    {
        ++endCount;
        panel.setDelegate(nullptr);
        panel.setDataSource(nullptr);
    }

    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewPanel() const override
    {
        return paths.size();
    }
    [[nodiscard]] std::string previewItemAtIndex(std::size_t index) const override
    {
        return fileUrl(paths.at(index)).value_or("");
    }

    bool handleEvent(PreviewPanelEvent event) override
    {
        events.push_back(event);
        return true;
    }
    [[nodiscard]] PreviewPanelFrame
    sourceFrameOnScreenForPreviewItem(std::size_t /*index*/) const override
    {
        return {};
    }
};

} // namespace tessaly
