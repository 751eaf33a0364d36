#pragma once

#include "app/delegate/KORVENAppDelegate.hpp"
#include "screens/KORVENScanViewController.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QWidget>

#include <cstddef>
#include <string>
#include <vector>

namespace tessaly {

class CellTableView;

/// The folder scan screen in a window that shows a scan, to measure how it shows folders of many
/// files.
class WindowLevel {
public:
    static constexpr std::size_t largeCount = 1'000'000; ///< files of the folder "large"
    static constexpr std::size_t usualCount = 100'000;   ///< files of the folder "usual"

    /// Keeps the scan and its history in the folder `documents`, which is made. Throws
    /// std::runtime_error. One in a process: the history's store is one.
    explicit WindowLevel(const std::string &documents);

    /// Opens a folder of the root, as a click on its name does, and waits until its first rows are
    /// painted.
    void open(const std::string &folder);
    /// Back to the root.
    void close();
    /// Rebuilds the rows of the level, sorts and paints them.
    void populate();

    /// Turns the wheel by one step over the rows `stepCount` times, to the end and beyond, and
    /// waits each time for the repaint. Milliseconds for each step.
    [[nodiscard]] std::vector<double> wheelSteps(int stepCount);
    /// Jumps to this share of the rows, with the scroll bar.
    void scrollTo(double share);

    /// Number of cells that exist, shown or waiting to be reused.
    [[nodiscard]] std::size_t cellCount() const;
    /// The folder that is shown.
    [[nodiscard]] const tree::LUMFileContainer *folder() const { return m_screen.drillResults(); }

private:
    void paint();
    [[nodiscard]] CellTableView &table() const;

    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
    QWidget m_window;
    KORVENScanViewController m_screen{m_services.all()};
};

} // namespace tessaly
