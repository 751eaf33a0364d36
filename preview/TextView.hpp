#pragma once

#include <QPlainTextEdit>

#include <vector>

class QPainter;

namespace tessaly {

class PaintedView;

/// A text to be read, with the numbers of its lines. Very long lines are split, since Qt's text
/// layout cannot handle them.
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
    std::vector<int> m_lineNumbers; ///< by block; 0 for the rest of a split line
};

} // namespace tessaly
