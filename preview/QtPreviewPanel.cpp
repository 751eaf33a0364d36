#include "preview/QtPreviewPanel.hpp"

#include "app/controls/frame/WindowGeometry.hpp"
#include "platform/FileUrl.hpp"
#include "platform/SettingsStore.hpp"
#include "preview/PreviewWindow.hpp"

#include <QApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

// Keys in the settings of users: never to be renamed.
constexpr std::string_view widthKey = "previewPanelWidth";
constexpr std::string_view heightKey = "previewPanelHeight";
constexpr QSize usualSize(820, 600);

} // namespace

QtPreviewPanel::QtPreviewPanel(PreviewPanelController *const &controller, SettingsStore *settings)
    : m_controller(controller), m_settings(settings), m_window(std::make_unique<PreviewWindow>())
{
    PreviewWindow *window = m_window.get();
    QObject::connect(window, &PreviewWindow::pagingAsked, window, [this](int step) { page(step); });
    QObject::connect(window, &PreviewWindow::closeAsked, window, [this] { orderOut(); });
    QObject::connect(window, &PreviewWindow::otherKeyPressed, window, [this] {
        // The answer makes no difference: a window has nothing behind it to pass the key to.
        if (m_delegate != nullptr) {
            m_delegate->handleEvent(PreviewPanelEvent::keyDown);
        }
    });
    restoreSize();
}

QtPreviewPanel::~QtPreviewPanel()
{
    if (isVisible()) {
        saveSize();
    }
}

bool QtPreviewPanel::isVisible() const
{
    return m_window->isVisible();
}

void QtPreviewPanel::makeKeyAndOrderFront()
{
    if (isVisible()) {
        makeKeyWindow();
        return;
    }
    // The controller sets the data source here, so it comes before reloadData().
    if (m_controller != nullptr && m_controller->acceptsPreviewPanelControl(*this)) {
        m_inControl = m_controller;
        m_inControl->beginPreviewPanelControl(*this);
    }
    // Before show(), or the window would be seen at another place first.
    placeOverProgram();
    m_window->show();
    makeKeyWindow();
    reloadData();
}

void QtPreviewPanel::makeKeyWindow()
{
    m_window->raise();
    // Raised and activated: either alone is not enough on every window manager.
    m_window->activateWindow();
    m_window->setFocus();
}

void QtPreviewPanel::orderOut()
{
    if (!isVisible()) {
        return;
    }
    saveSize();
    m_window->hide();
    // A hidden window would play on, and keep its file open.
    m_window->stop();
    endControl();
}

void QtPreviewPanel::endControl()
{
    if (m_inControl != nullptr) {
        // Reset first: the controller may close the panel, which ends its control again.
        std::exchange(m_inControl, nullptr)->endPreviewPanelControl(*this);
    }
}

void QtPreviewPanel::setCurrentPreviewItemIndex(std::size_t index)
{
    // The same index again does not reload: a video would start over.
    if (std::exchange(m_index, index) != index || !m_unlistedUrl.empty()) {
        reloadData();
    }
}

std::size_t QtPreviewPanel::itemCount() const
{
    return m_dataSource != nullptr ? m_dataSource->numberOfPreviewItemsInPreviewPanel() : 0;
}

std::string QtPreviewPanel::currentUrl() const
{
    if (!m_unlistedUrl.empty()) {
        return m_unlistedUrl;
    }
    // The list may have become shorter since the index was set.
    return m_index < itemCount() ? m_dataSource->previewItemAtIndex(m_index) : std::string();
}

void QtPreviewPanel::reloadData()
{
    m_unlistedUrl.clear();
    if (!isVisible()) {
        return; // opening the panel reloads
    }
    if (const auto path = pathOfFileUrl(currentUrl())) {
        m_window->showFile(*path, m_index, itemCount());
    } else {
        m_window->showNothing();
    }
}

void QtPreviewPanel::showUnlistedItem(const std::string &url)
{
    const auto path = pathOfFileUrl(url);
    if (isVisible() && path) {
        m_unlistedUrl = url;
        m_window->showUnlistedFile(*path, itemCount());
    }
}

void QtPreviewPanel::page(int step)
{
    const std::size_t count = itemCount();
    if (!m_unlistedUrl.empty()) { // it stands before the first file, and after the last
        if (count > 0) {
            m_index = step < 0 ? count - 1 : 0;
            reloadData();
        }
        return;
    }
    if (count < 2) {
        return;
    }
    // Paging wraps around at both ends. Adding count − 1 is a step back without a negative number.
    const std::size_t current = std::min(m_index, count - 1);
    setCurrentPreviewItemIndex((current + (step < 0 ? count - 1 : 1)) % count);
}

void QtPreviewPanel::restoreSize()
{
    QSize size = usualSize;
    if (m_settings != nullptr) {
        const std::int64_t width = m_settings->integer(widthKey);
        const std::int64_t height = m_settings->integer(heightKey);
        // The settings are a file that may have been edited by hand.
        constexpr std::int64_t maxSide = 16'000;
        if (width > 0 && height > 0 && width <= maxSide && height <= maxSide) {
            size = QSize(static_cast<int>(width), static_cast<int>(height));
        }
    }
    // The size may be from a larger screen that is no longer connected.
    const QSize room = m_window->screen()->availableSize();
    m_window->resize(size.boundedTo(room));
    m_savedSize = m_window->size();
}

void QtPreviewPanel::saveSize()
{
    // Full screen is not a size that should come back as a window's.
    const QSize size =
        m_window->isFullScreen() ? m_window->normalGeometry().size() : m_window->size();
    // A size that a small screen has enforced is not what the user chose.
    if (m_settings == nullptr || size == m_savedSize || size.isEmpty()) {
        return;
    }
    m_savedSize = size;
    m_settings->setInteger(widthKey, size.width());
    m_settings->setInteger(heightKey, size.height());
    m_settings->flush();
}

void QtPreviewPanel::placeOverProgram()
{
    const QWidget *program = QApplication::activeWindow();
    if (program == nullptr || program == m_window.get()) {
        return;
    }
    m_window->winId(); // creates the native window, so that it has a handle
    // Keeps the panel above the program's window. A QWidget parent would do so as well, but destroy
    // the panel with it.
    m_window->windowHandle()->setTransientParent(program->windowHandle());
    QRect place(QPoint(), m_window->size());
    place.moveCenter(program->geometry().center());
    const QRect room = program->screen()->availableGeometry();
    // On Wayland this has no effect: there the compositor places windows.
    m_window->move(frameWithin(place, room).topLeft());
}

} // namespace tessaly
