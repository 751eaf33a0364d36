#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

#include <optional>

namespace tessaly {

class CellTableView;

/// Lies over a table that has lost rows: the removed row fades out, and those below it move up to
/// their places. Where more has changed than one row, the table's old picture fades out.
///
/// The table stays usable: it gets all mouse events, and scrolling or resizing it ends the
/// animation.
///
/// Duration: the style's (QStyle::SH_Widget_Animation_Duration); 0 turns animations off.
///
/// Use: construct it, change the table, and play(); it deletes itself.
/// Threads: the main thread.
class RowRemovalAnimation final : public QWidget {
    Q_OBJECT

public:
    /// Whether the table is visible, and its style has animations.
    [[nodiscard]] static bool isWanted(const CellTableView &table);

    /// Takes a picture of the table. `stage` contains the table, stays visible even when the table
    /// is hidden, and owns this.
    RowRemovalAnimation(CellTableView &table, QWidget &stage);

    /// `row`: the index that the removed row had; nothing when it was not one row.
    void play(std::optional<int> row);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void prepareMove(int row);
    void end();

    CellTableView *m_table;
    int m_offsetBefore;
    QPixmap m_before;   ///< what the table showed
    QPixmap m_after;    ///< the rows that have moved up, as they are now
    QRect m_removedRow; ///< of the removed row; empty when the old picture fades
    QVariantAnimation m_progress;
};

} // namespace tessaly
