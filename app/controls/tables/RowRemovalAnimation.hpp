#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

#include <optional>

namespace tessaly {

class CellTableView;

/// Shows how rows leave a table, over a table that shows what is left already: the row fades, and
/// those below it move up to their places. Where more changed than that, all that was there fades.
///
/// The table is not held up. The mouse goes through to it, and what moves the table in another way,
/// like scrolling, ends the show.
///
/// Length: what the table's style says (QStyle::SH_Widget_Animation_Duration); 0 shows nothing.
///
/// Use: make one before the table changes, change the table, and play() it. It goes by itself.
/// Threads: the main thread.
class RowRemovalAnimation final : public QWidget {
    Q_OBJECT

public:
    /// Whether there is anybody to see it: the table is in sight, and its style moves things.
    [[nodiscard]] static bool isWanted(const CellTableView &table);

    /// Keeps a picture of the table as it is. `stage` holds the table, and stays in sight also when
    /// the table does not; it owns this.
    RowRemovalAnimation(CellTableView &table, QWidget &stage);

    /// `row`: the one that has left, as rows were counted before; nothing when it was not one.
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
    QPixmap m_after;    ///< what the rows from the one that left on show now
    QRect m_leavingRow; ///< empty where all that was there fades
    QVariantAnimation m_progress;
};

} // namespace tessaly
