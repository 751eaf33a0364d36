#pragma once

#include <QCoreApplication>
#include <QStringList>

#include <optional>

namespace tessaly {

/// What the program understands when it is started from a terminal: --help and --version. Neither
/// needs a display.
///
/// Options that Qt handles itself ("-platform", "-style") are not refused.
///
/// Threads: the main thread, before and while there is a QApplication.
class CommandLine final {
    Q_DECLARE_TR_FUNCTIONS(tessaly::CommandLine)

public:
    /// The text to print, and the exit status after it.
    struct Answer {
        int status = 0;
        QString text; ///< whole lines; for standard output, or standard error after a failure
    };

    /// What --help and --version are answered with; nothing for other arguments. The first argument
    /// is the program's name, as in all lists here. Needs a QCoreApplication.
    [[nodiscard]] static std::optional<Answer> answerTo(const QStringList &arguments);

    /// What an argument that is not understood is answered with; nothing if there is none. Ask
    /// after Qt has taken the options that are its own.
    [[nodiscard]] static std::optional<Answer> refusalOf(const QStringList &arguments);

    /// Prints the answer to the arguments of main(), for which it makes a QCoreApplication of its
    /// own: call it before there is one. Nothing if the program is to go on, and else the status to
    /// end with.
    [[nodiscard]] static std::optional<int> answer(int argumentCount, char **arguments);

    /// Prints the refusal of the arguments that Qt left. Nothing if the program is to go on, and
    /// else the status to end with.
    [[nodiscard]] static std::optional<int> refuse();
};

} // namespace tessaly
