#pragma once

#include <QPlainTextEdit>

#include <vector>

class QPainter;

namespace tessaly {

class PaintedView;

/// A text to be read, with the numbers of its lines. Very long lines are cut up: no text layout
/// copes with them.
class TextView final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit TextView(QWidget *parent = nullptr);

    void show(const QString &text);
    void clear();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] int numbersWidth() const;
    void placeNumbers();
    void paintNumbers(QPainter &painter) const;

    PaintedView *m_numbers;
    std::vector<int> m_lineNumbers; ///< by block; 0 for the rest of a line that was cut up
};

} // namespace tessaly
