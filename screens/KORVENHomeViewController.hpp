#pragma once

#include "screens/ResultViewController.hpp"

#include <memory>
#include <optional>
#include <string>

class QStackedWidget;

namespace tessaly {

/// The screen that scans the user's home folder. Before the first scan it has the user choose that
/// folder once, on its setup page, and keeps a bookmark of it in the settings; from then on it
/// scans without asking. The last completed scan is kept in a file of its own and is there at the
/// next start. These scans are not recorded in the history.
class KORVENHomeViewController final : public ResultViewController {
    Q_OBJECT

public:
    /// The pages of the tab view.
    enum Page { setupPage, resultsPage };

    /// `services` outlive this.
    explicit KORVENHomeViewController(
        const Services &services,
        const QString &nibName = QStringLiteral("KORVENHomeViewController"));
    ~KORVENHomeViewController() override;
    Q_DISABLE_COPY_MOVE(KORVENHomeViewController)

    /// Does nothing when the home folder had yet to be chosen as the screen was set up.
    void startLoading() override;

    /// Scans the home folder. Does nothing while a scan is running.
    void scanClicked();
    void scanButtonPressed() override { scanClicked(); }

    /// Asks for the home folder. When it is the one, keeps its bookmark and shows the results page,
    /// which is empty still; else shows an alert.
    void continueClicked();

    /// Resolves the bookmark of the home folder, into homeFolder(). Whether the home folder has to
    /// be chosen (again).
    bool checkSetupMode();

    /// Tells the user that the folder was not the home folder.
    void setupAlert();
    /// The user has closed that alert. There is nothing to do.
    void alertDidEnd(int returnCode);

    void quickLookItem(std::string_view path) override;

    /// The URL of the home folder; nothing while it has not been chosen.
    [[nodiscard]] const std::optional<std::string> &homeFolder() const noexcept
    {
        return m_homeFolder;
    }
    /// The page that is shown.
    [[nodiscard]] QStackedWidget &tabView() const noexcept { return m_tabView; }

    /// The file with the last completed scan.
    [[nodiscard]] std::string itemArchivePath() const;

private:
    void showStart() override;
    [[nodiscard]] std::optional<ScanResult> loadScanResults() override;
    [[nodiscard]] ScanResult completedScan(const FinishedScan &scan) override;
    void notifyCanceled() override;
    void resultWasShown(const ScanResult &result) override;

    void folderWasChosen(const std::string &folder);
    void showResultsPage();
    [[nodiscard]] std::string homePath() const;

    QStackedWidget &m_tabView; ///< the view owns it
    std::optional<std::string> m_homeFolder;
    bool m_wasSetUpAtStart = false;
};

} // namespace tessaly
