#pragma once
// The language store: every user-facing text by number, one table per language.
// "Language.dll" beside the executable is a Qt binary resource holding the table.
#include <QString>

namespace fm {
// Registers the store at the folder of the executable; false when it is missing or unreadable.
bool InitLibrary(const QString &name);
// index 0 Italian, 1 English. Qt's own dialogs (file, colour, print) follow.
void SetLanguage(int index);
// The language of the system's locale: 0 for Italian, 1 for anything else.
int SystemLanguage();
// Loads the distribution's translations of Qt's own texts for the language, in place of
// those loaded before; false when none could be loaded (the dialogs then speak English).
bool UseQtTranslations(int index);
// The text of string `number` in the language chosen; empty for a number without text.
QString ResString(int number);
void FreeResLibrary();
// The leading number of a Tag (0 for a Tag that isn't a number).
int TagNumber(const QString &tag);
} // namespace fm
