#pragma once

#include "engine/tree/ScanTree.hpp"
#include "screens/results/ResultRows.hpp"
#include "screens/results/ScanWork.hpp"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QString>

#include <memory>
#include <optional>
#include <string>

namespace tessaly {

/// What becomes of results.
Q_DECLARE_LOGGING_CATEGORY(resultLog)

/// What a scan screen is to show: a tree with the rows of its top level, or why there is none.
///
/// Threads: any; it is made on a worker and shown on the main thread.
struct ScanResult {
    Q_DECLARE_TR_FUNCTIONS(ScanResult)

public:
    std::shared_ptr<tree::ScanTree> tree; ///< nullptr: none; the screen stays or becomes empty
    ResultRows rows;
    QString dateText;
    std::optional<std::string> scanKey; ///< of the record of the scan, if it has one
    /// What to say where the rows would be, instead of the usual; a title and a text.
    QString emptyTitle;
    QString emptyText;
    /// What to say beside the rows; empty: nothing.
    QString notice;
    /// The screen takes the tree but keeps looking as if it still scanned: rows, fields and
    /// buttons stay as they are, for good.
    bool keepsScanningLook = false;

    /// A tree from its top, with rows by the preferences as they are now.
    [[nodiscard]] static ScanResult ofTree(const std::shared_ptr<tree::ScanTree> &tree);
    /// The tree of a scan that has just ended. If its folder could not be opened, it says why.
    [[nodiscard]] static ScanResult ofScan(const FinishedScan &scan);
    /// The tree of a scan file. If it cannot be read, the result says why, and so does the log.
    [[nodiscard]] static ScanResult ofFile(const std::string &path);
    /// No tree, for a reason.
    [[nodiscard]] static ScanResult ofProblem(const QString &title, const QString &text);
    /// The notice of a scan that was completed but could not be kept, for this reason.
    [[nodiscard]] static QString noticeOfLostScan(const std::string &reason);
    /// No tree, since its scan file cannot be read for this reason.
    [[nodiscard]] static ScanResult ofUnreadableFile(const QString &reason);
};

} // namespace tessaly
