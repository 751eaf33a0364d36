#pragma once

#include <QByteArray>
#include <QString>

namespace tessaly {

/// The program's log: a line on standard error for each message, "tessaly: settings: TEXT" for one
/// of the category "tessaly.settings". Shown are warnings and worse, and what rows are asked to
/// show in the file manager ("tessaly.screens" and "tessaly.drives"); the variable QT_LOGGING_RULES
/// asks for more ("tessaly.*=true"). Where standard error leads to the journal, the lines go there.
///
/// SIGPIPE is ignored from install() on, so that the program does not end when nothing reads its
/// standard error any more.
class ProgramLog {
public:
    /// Writes the messages of Qt's logging in this way from now on.
    static void install();

    /// A message as its line, without the line end. Control characters, which would break the line
    /// or drive a terminal, become "?".
    [[nodiscard]] static QByteArray lineOf(const char *category, const QString &text);
};

} // namespace tessaly
