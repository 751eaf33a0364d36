#pragma once

#include <QByteArray>
#include <QString>

namespace tessaly {

/// The program's log: a line on standard error for each message, "tessaly: settings: TEXT" for one
/// of the category "tessaly.settings". Shown are warnings and worse, and what rows are asked to
/// show in the file manager ("tessaly.screens" and "tessaly.drives"); the variable QT_LOGGING_RULES
/// asks for more ("tessaly.*=true"). Where standard error leads to the journal, the lines go there.
///
/// Nobody reading standard error any more is no reason for the program to end: the signal SIGPIPE
/// is ignored from here on.
class ProgramLog {
public:
    /// From here on messages of Qt's logging go this way.
    static void install();

    /// A message as its line, without the end. What would break the line or drive a terminal
    /// becomes "?".
    [[nodiscard]] static QByteArray lineOf(const char *category, const QString &text);
};

} // namespace tessaly
