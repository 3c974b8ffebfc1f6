#pragma once
// The command line of fluxmere-cli: the commands, their options and help texts, read with
// QCommandLineParser. Options of the whole program may stand before or after the command.
#include <QCommandLineParser>
#include <QStringList>
#include <memory>

namespace fm::cli {

// The outcome of reading the arguments (argv without the program's name).
struct CommandLine {
    QString command;  // empty when none was given
    std::unique_ptr<QCommandLineParser> parser;
    QStringList positional;
    QString error;      // a usage problem, already prefixed with "fluxmere-cli[ COMMAND]: "
    bool help = false;  // --help: the command's own, or the program's without a command
    bool version = false;
    QString Value(const char *name) const { return parser->value(QLatin1String(name)); }
    bool IsSet(const char *name) const { return parser->isSet(QLatin1String(name)); }
    // Every value of an option that may repeat, in order.
    QStringList Values(const char *name) const { return parser->values(QLatin1String(name)); }
};
CommandLine ReadCommandLine(const QStringList &args);
// The help of a command, or of the whole program for an empty one.
QString HelpText(const QString &command);
QString VersionText();
// "fluxmere-cli[ COMMAND]: problem" and where to find the help, on standard error; kUsage.
int UsageError(const QString &command, const QString &problem);

}  // namespace fm::cli
