#include "screens/results/ScanResult.hpp"

#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/NameText.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "engine/tree/PrintableText.hpp"
#include "screens/results/KORVENViewController.hpp"

namespace tessaly {

Q_LOGGING_CATEGORY(resultLog, "tessaly.screens.result")

ScanResult ScanResult::ofTree(const std::shared_ptr<tree::ScanTree> &tree)
{
    ScanResult result;
    result.tree = tree;
    // Rows are part of the result, so that a worker can sort them. Sorting a million of them takes
    // tenths of a second.
    result.rows = resultRowsOf(&tree->root(), KORVENViewController::rowThresholds());
    return result;
}

ScanResult ScanResult::ofScan(const FinishedScan &scan)
{
    ScanResult result = ofTree(scan.tree);
    // The tree is kept nevertheless. It is empty, but the screen shows its path.
    if (scan.rootProblem) {
        result.emptyTitle = tr("This folder cannot be read");
        result.emptyText = QString::fromLocal8Bit(scan.rootProblem->c_str());
    }
    return result;
}

ScanResult ScanResult::ofFile(const std::string &path)
{
    const auto tree = archive::readScanFile(path);
    if (tree) {
        return ofTree(tree.value());
    }
    const archive::ArchiveError &error = tree.error();
    qCWarning(resultLog, "%s: %s", tree::printableText(path).c_str(), error.text().c_str());
    // File names are any bytes, and control characters among them would spoil the log and the
    // label.
    const QString reason = QString::fromStdString(tree::printableText(error.text()));
    // What the system says names the file already.
    return ofUnreadableFile(error.kind == archive::ArchiveError::Kind::unreadable
                                ? reason
                                : drawableText(textOfName(path)) + u'\n' + reason);
}

ScanResult ScanResult::ofProblem(const QString &title, const QString &text)
{
    ScanResult result;
    result.emptyTitle = title;
    result.emptyText = text;
    return result;
}

QString ScanResult::noticeOfLostScan(const std::string &reason)
{
    return tr("This scan could not be kept: %1").arg(drawableText(textOfName(reason)));
}

ScanResult ScanResult::ofUnreadableFile(const QString &reason)
{
    return ofProblem(tr("This scan cannot be opened"), reason);
}

} // namespace tessaly
