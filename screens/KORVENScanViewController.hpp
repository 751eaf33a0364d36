#pragma once

#include "screens/ResultViewController.hpp"

#include <memory>
#include <optional>
#include <string>

namespace tessaly {

class KORVENHistoryItem;
class NamedException;

/// The screen on which the user scans any folder. It shows the most recent recorded scan when the
/// program starts, and any other one that is reopened; every scan that completes is recorded.
class KORVENScanViewController final : public ResultViewController {
    Q_OBJECT

public:
    /// `services` outlive this.
    explicit KORVENScanViewController(
        const Services &services,
        const QString &nibName = QStringLiteral("KORVENScanViewController"));
    ~KORVENScanViewController() override;
    Q_DISABLE_COPY_MOVE(KORVENScanViewController)

    /// Asks for a folder and scans it. Requires: no scan is running.
    void scanButtonPressed() override;

    /// Shows the recorded scan with this key. Requires: no scan is running.
    void loadHistoryItem(std::string_view scanKey);

    void quickLookItem(std::string_view path) override;

    /// The key of the scan that is shown, empty when it has none.
    [[nodiscard]] const std::string &uuid() const noexcept { return m_uuid; }

    /// Required interface: a file of the documents folder that nothing is written to.
    [[nodiscard]] std::string itemArchivePath() const;

private:
    void showStart() override;
    [[nodiscard]] std::optional<ScanResult> loadScanResults() override;
    [[nodiscard]] ScanResult completedScan(const FinishedScan &scan) override;
    void notifyCanceled() override;
    void resultWasShown(const ScanResult &result) override;

    [[nodiscard]] static ScanResult historyProblem(const NamedException &exception);
    [[nodiscard]] ScanResult recordedScan(const KORVENHistoryItem &record) const;
    /// Keeps the bookmark, the tree and the record. Why the scan is not in the history afterwards;
    /// nothing when it is.
    [[nodiscard]] std::optional<std::string> record(const tree::ScanTree &tree,
                                                    const KORVENHistoryItem &item) const;

    std::string m_uuid;
};

} // namespace tessaly
