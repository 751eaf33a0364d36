// Measures how long a preview takes, and prints a line for each figure: name, and the best and the
// median in milliseconds, tab separated.
//
//     preview_figures [--repetitions N]
//     preview_figures --first FILE    the first preview of a process alone, in milliseconds
//
// A "first" preview begins where the user asks for it: nothing of the module is loaded yet. A
// "next" one is shown in the panel that is open by then. Of documents, the time ends with the first
// page.

#include "bench/MadeTrees.hpp"
#include "platform/linux/files/LoadedPreviewPanels.hpp"
#include "tests/fakes/FakeSettingsStore.hpp"
#include "tests/preview/PanelItems.hpp"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRandomGenerator>
#include <QWidget>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace tessaly;
using namespace Qt::StringLiterals;

constexpr int usualRepetitions = 9;

/// About 5 MB: 12 megapixels of noise over a gradient.
void writeJpeg(const QString &path)
{
    QImage image(4000, 3000, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int noise = static_cast<int>(random.bounded(40U));
            line[x] = qRgb(x / 20 + noise, y / 15 + noise, 90 + noise);
        }
    }
    image.save(path, "jpg", 84);
}

void writeDocument(const QString &path)
{
    QPdfWriter writer(path);
    QPainter painter(&writer);
    for (int page = 0; page < 20; ++page) {
        for (int line = 0; line < 50; ++line) {
            painter.drawText(200, 250 * (line + 1), u"A line of text, as there are many."_s);
        }
        if (page < 19) {
            writer.newPage();
        }
    }
}

/// The loader of the module's panel. Its class is the module's own, but its signals have names.
QObject *loaderOfPanel()
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        for (QObject *child : window->findChildren<QObject *>()) {
            if (child->inherits("tessaly::PreviewLoader")) {
                return child;
            }
        }
    }
    qFatal("there is no panel");
}

/// The panel of the module, and the files it shows.
struct Panel {
    /// Shows the file, and returns the milliseconds that it took.
    double shown(const QString &path)
    {
        QElapsedTimer watch;
        watch.start();
        items.paths = {path.toStdString()};
        panels.setController(&items);
        panels.sharedPreviewPanel().makeKeyAndOrderFront();
        QEventLoop waiting;
        const char *const shown = path.endsWith(".pdf"_L1) ? SIGNAL(pageDrawn(int, QImage))
                                                           : SIGNAL(loaded(tessaly::LoadedPreview));
        if (!QObject::connect(loaderOfPanel(), shown, &waiting, SLOT(quit()))) {
            qFatal("the panel has changed");
        }
        waiting.exec();
        const auto time = static_cast<double>(watch.nsecsElapsed()) / 1e6;
        panels.sharedPreviewPanel().orderOut();
        return time;
    }

    FakeSettingsStore settings;
    PanelItems items;
    LoadedPreviewPanels panels{TESSALY_PREVIEW_MODULE_PATH, settings};
};

double firstOfAProcess(const QString &path)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {u"--first"_s, path});
    process.waitForFinished(-1);
    return process.readAllStandardOutput().trimmed().toDouble();
}

void print(const char *name, std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    std::cout << name << "\t" << times.front() << "\t" << times[times.size() / 2] << std::endl;
}

void measure(const char *name, const QString &path, int repetitions)
{
    std::vector<double> first;
    std::vector<double> next;
    Panel panel;
    panel.shown(path);
    for (int i = 0; i < repetitions; ++i) {
        first.push_back(firstOfAProcess(path));
        next.push_back(panel.shown(path));
    }
    print((std::string("first preview of a ") + name + ", ms").c_str(), first);
    print((std::string("next preview of a ") + name + ", ms").c_str(), next);
}

} // namespace

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argumentCount, arguments);
    const QStringList given = QApplication::arguments();
    if (given.size() == 3 && given[1] == "--first"_L1) {
        std::cout << Panel().shown(given[2]) << std::endl;
        return 0;
    }
    const int repetitions =
        given.size() == 3 && given[1] == "--repetitions"_L1 ? given[2].toInt() : usualRepetitions;
    const ScratchFolder scratch;
    const QString image = QString::fromStdString(scratch.path("image.jpg"));
    const QString document = QString::fromStdString(scratch.path("document.pdf"));
    writeJpeg(image);
    writeDocument(document);
    measure("JPEG of 5 MB", image, repetitions);
    measure("document's page", document, repetitions);
    return 0;
}
