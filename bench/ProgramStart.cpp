#include "bench/ProgramStart.hpp"

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

#include <stdexcept>

namespace tessaly {

void runUntil(const std::string &moment, const std::string &program,
              const std::map<std::string, std::string> &environment)
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : environment) {
        variables.insert(QString::fromStdString(name), QString::fromStdString(value));
    }
    process.setProcessEnvironment(variables);
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QByteArray line = QByteArray::fromStdString(moment) + '\n';

    process.start(QString::fromStdString(program), {});
    QByteArray told;
    while (!told.contains(line)) {
        if (!process.waitForReadyRead(-1)) {
            throw std::runtime_error(program + " ended before it told \"" + moment + "\"");
        }
        told += process.readAll();
    }
    process.kill();
    process.waitForFinished(-1);
}

} // namespace tessaly
