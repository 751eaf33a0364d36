// A window with nothing in it, to compare the start of the program with: tells when it is painted.

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

class EmptyWindow final : public QWidget {
protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QTimer::singleShot(0, this, [] { std::fputs("painted\n", stderr); });
    }
};

} // namespace

int main(int argumentCount, char **arguments)
{
    const QApplication application(argumentCount, arguments);
    EmptyWindow window;
    window.resize(1080, 700);
    window.show();
    return QApplication::exec();
}
