#pragma once

#include "app/controls/text/NameLabel.hpp"
#include "engine/archive/Timestamp.hpp"
#include "engine/tree/SizeNumber.hpp"
#include "platform/DateTexts.hpp"
#include "platform/Services.hpp"
#include "screens/results/ResultRows.hpp"

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

class QKeyEvent;

namespace tessaly {

/// Base of both scan screens: the thresholds of the preferences, texts of sizes and dates, the
/// space bar that previews, and what the cells of a result table ask of their screen.
///
/// The preferences are read at each call, so a change shows when a table is next filled.
///
/// Threads: the main thread, but for buildString() and formatDate(), which any thread may call.
class KORVENViewController : public QObject {
    Q_OBJECT

public:
    /// `services` outlive this.
    explicit KORVENViewController(const Services &services);
    ~KORVENViewController() override;
    Q_DISABLE_COPY_MOVE(KORVENViewController)

    /// Shows what the folder with this name holds. Nothing here; screens override it.
    virtual void drillDownOneLevel(std::string_view name);
    /// Previews the file with this path. Nothing here; screens override it.
    virtual void quickLookItem(std::string_view path);

    /// Whether the path of the folder whose rows are listed is known. If it is not, the actions of
    /// the rows do nothing. Always known here; screens override it.
    [[nodiscard]] virtual bool canActOnRows() const { return true; }

    /// Bytes that an item whose name begins with "." must exceed to be listed; 0: none is listed.
    [[nodiscard]] static std::uint64_t compareHiddenItem();
    /// Bytes that any other file must exceed to be listed; 0: none is listed.
    [[nodiscard]] static std::uint64_t compareLargeFile();
    /// Both.
    [[nodiscard]] static RowThresholds rowThresholds()
    {
        return {compareHiddenItem(), compareLargeFile()};
    }

    /// The date as the user's language and country write it, by the system's settings of now.
    [[nodiscard]] QString formatDate(archive::Timestamp date, DateStyle dateStyle,
                                     DateStyle timeStyle) const;
    /// With one style for both.
    [[nodiscard]] QString formatDate(archive::Timestamp date, DateStyle style) const;
    /// With the short style for both.
    [[nodiscard]] QString formatDate(archive::Timestamp date) const;

    /// A size text ("1.50 KB"); empty for a number that reads as -1, "Canceled" for -2.
    [[nodiscard]] static QString buildString(tree::SizeNumber byteCount);

    /// Called for each key typed in the result table: the space bar closes the preview panel or
    /// shows it. Whether the key is one to select rows by typing, which is always so.
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &searchString);

    /// The field with the path of the folder whose rows are listed; the view owns it.
    [[nodiscard]] NameLabel *folderNameField() const noexcept { return m_folderNameField; }
    void setFolderNameField(NameLabel *field) { m_folderNameField = field; }

    /// What the actions of the cells ask.
    [[nodiscard]] FileManager &fileManager() const noexcept { return m_services.fileManager; }

    // Required interface: a stopwatch.
    void startTiming();
    /// Seconds since startTiming(); forgets both ends. Nothing passed if it never started.
    double stopTiming();
    [[nodiscard]] std::optional<archive::Timestamp> startTimer() const noexcept
    {
        return m_startTimer;
    }
    void setStartTimer(std::optional<archive::Timestamp> date) noexcept { m_startTimer = date; }
    [[nodiscard]] std::optional<archive::Timestamp> endTimer() const noexcept { return m_endTimer; }
    void setEndTimer(std::optional<archive::Timestamp> date) noexcept { m_endTimer = date; }

protected:
    [[nodiscard]] const Services &services() const noexcept { return m_services; }

private:
    const Services m_services;
    QPointer<NameLabel> m_folderNameField;
    std::optional<archive::Timestamp> m_startTimer;
    std::optional<archive::Timestamp> m_endTimer;
};

} // namespace tessaly
