#pragma once
// The desktop settings file, "Fluxmere-desktop.ini" beside the options: what the windows
// remember that the options record has no room for. Sections of key=value lines; a
// value runs to the end of its line as it stands. Each writer reads the whole file and
// writes it back whole, so one part of the program never drops another's section.
#include <QMap>
#include <QString>

namespace fm {
class DesktopSettings {
public:
    // The file as it stands; a missing or unreadable one gives no sections at all.
    static DesktopSettings Read();
    QString Value(const QString &section, const QString &key, const QString &otherwise = {}) const;
    bool Has(const QString &section, const QString &key) const;
    void Set(const QString &section, const QString &key, const QString &value);
    // Through the safe writer; faults reach the caller.
    void Save() const;

private:
    QMap<QString, QMap<QString, QString>> sections_;
};

// A free text on one line: backslash, line feed and carriage return as \\, \n and \r.
QString EscapeLine(const QString &text);
QString UnescapeLine(const QString &line);
}  // namespace fm
