#pragma once

#include "platform/Interface.hpp"

#include <cstddef>
#include <string>

namespace tessaly {

/// What the panel pages through.
///
/// Threads: the main thread.
class PreviewPanelDataSource : public Interface {
public:
    [[nodiscard]] virtual std::size_t numberOfPreviewItemsInPreviewPanel() const = 0;
    /// The item's "file:" URL (see FileUrl.hpp); empty when there is no such item.
    [[nodiscard]] virtual std::string previewItemAtIndex(std::size_t index) const = 0;
};

/// What happens to the panel, by the numbers of the events.
enum class PreviewPanelEvent {
    mouseDown = 1,
    mouseUp = 2,
    keyDown = 10,
    keyUp = 11,
    scrollWheel = 22,
};

/// A place on the screen, in its coordinates; all 0 is nowhere.
struct PreviewPanelFrame {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const PreviewPanelFrame &) const = default;
};

/// Handles what the panel leaves to its user: events that it has no use for, and where items lie.
///
/// Threads: the main thread.
class PreviewPanelDelegate : public Interface {
public:
    /// Offered an event that the panel does not use. True when it was handled.
    virtual bool handleEvent(PreviewPanelEvent event) = 0;
    /// Where the item lies on the screen, for the panel to grow from; nowhere: it just appears.
    [[nodiscard]] virtual PreviewPanelFrame
    sourceFrameOnScreenForPreviewItem(std::size_t index) const = 0;
};

/// The window that shows previews of files, floating above the program's own.
///
/// Threads: the main thread.
class PreviewPanel : public Interface {
public:
    [[nodiscard]] virtual bool isVisible() const = 0;
    /// Shows the panel in front of all windows and gives it the keyboard. A panel that was closed
    /// first asks its controller to take control.
    virtual void makeKeyAndOrderFront() = 0;
    /// Gives a visible panel the keyboard.
    virtual void makeKeyWindow() = 0;
    /// Closes the panel and ends its controller's control. The current item stays for the next
    /// time.
    virtual void orderOut() = 0;

    // The panel owns neither: the caller sets nullptr before it destroys them.
    [[nodiscard]] virtual PreviewPanelDelegate *delegate() const = 0;
    virtual void setDelegate(PreviewPanelDelegate *delegate) = 0;
    [[nodiscard]] virtual PreviewPanelDataSource *dataSource() const = 0;
    virtual void setDataSource(PreviewPanelDataSource *dataSource) = 0;

    /// Which item is shown. One that is not there shows nothing.
    [[nodiscard]] virtual std::size_t currentPreviewItemIndex() const = 0;
    virtual void setCurrentPreviewItemIndex(std::size_t index) = 0;
    /// Asks the data source again and reloads the current item.
    virtual void reloadData() = 0;
    /// Shows an item, by its "file:" URL, that is none of the data source's, until another item is
    /// to be shown: paging leads to the data source's first one or its last, reloadData() to the
    /// current one. Does nothing while the panel is closed.
    virtual void showUnlistedItem(const std::string &url) = 0;
};

/// Sets the panel's data source and delegate while it is open.
///
/// Threads: the main thread.
class PreviewPanelController : public Interface {
public:
    /// Whether beginPreviewPanelControl() is to be called, when the panel opens.
    [[nodiscard]] virtual bool acceptsPreviewPanelControl(PreviewPanel &panel) = 0;
    virtual void beginPreviewPanelControl(PreviewPanel &panel) = 0;
    /// The panel has been closed.
    virtual void endPreviewPanelControl(PreviewPanel &panel) = 0;
};

/// The way to the one preview panel, which is made when it is first asked for.
///
/// Threads: the main thread.
class PreviewPanels : public Interface {
public:
    /// Whether the panel has been made; asking does not make it.
    [[nodiscard]] virtual bool sharedPreviewPanelExists() const = 0;
    [[nodiscard]] virtual PreviewPanel &sharedPreviewPanel() = 0;

    /// The controller that the panel asks to take control when it opens; nullptr for none. One that
    /// is replaced while it has control is told that this has ended; the new one is asked when the
    /// panel opens next. Not owned: the caller sets nullptr before it destroys the controller.
    [[nodiscard]] virtual PreviewPanelController *controller() const = 0;
    virtual void setController(PreviewPanelController *controller) = 0;
};

} // namespace tessaly
