#pragma once

#include <QDialog>
#include <QList>

class QFormLayout;
class QLabel;
class QVBoxLayout;

namespace tessaly {

class DateTexts;
struct ItemInformation;

/// A window of its own with what is known about one item, for desktops whose file manager has none.
/// Escape closes it. It does not keep the program running.
///
/// The labels with the values can be found by their object names: "name", "kind", "size",
/// "contains", "where", "target", "created", "modified", "accessed", "owner", "group", "others",
/// "mode"; where there is nothing to tell but why, that is "problem".
class InformationWindow final : public QDialog {
    Q_OBJECT

public:
    /// The window takes what it shows from its arguments at once.
    InformationWindow(const ItemInformation &item, const DateTexts &dates);

private:
    void addHeader(const ItemInformation &item, QVBoxLayout &column);
    void addGeneral(const ItemInformation &item, QVBoxLayout &column);
    void addDates(const ItemInformation &item, const DateTexts &dates, QVBoxLayout &column);
    void addPermissions(const ItemInformation &item, QVBoxLayout &column);
    void addProblem(const ItemInformation &item, QVBoxLayout &column);

    [[nodiscard]] QFormLayout &addSection(const QString &title, QVBoxLayout &column);
    void addRow(QFormLayout &rows, const QString &objectName, const QString &caption,
                const QString &value);
    /// All sections have their values below one another.
    void alignCaptions();

    QList<QLabel *> m_captions;
};

} // namespace tessaly
