#pragma once
// The window-free steps of start-up: the check of the files beside the executable and
// the cutting of the command line.
#include <QString>
#include <QStringList>

namespace fm {
// The three files the application cannot run without; reports the first one missing.
bool CheckIntegrity();
// The command tail of the older platform, rebuilt from the arguments: an argument
// with blanks or tabs is put in double quotes.
QString CommandTail(const QStringList &arguments);
// Cuts the tail into at most 10 tokens; quotes stay in the tokens.
QStringList CutCommandTail(const QString &tail);
} // namespace fm
