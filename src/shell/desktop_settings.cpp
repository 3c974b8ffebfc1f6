#include "shell/desktop_settings.h"

#include "core/safe_file.h"
#include "shell/file_folders.h"

#include <QFile>

namespace fm {
DesktopSettings DesktopSettings::Read() {
    DesktopSettings s;
    QFile f(DesktopSettingsPath());
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return s;
    QString section;
    for (const QString &line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('['))) {
            const QString head = line.trimmed();
            section = head.endsWith(QLatin1Char(']')) ? head.mid(1, head.size() - 2) : QString();
            continue;
        }
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (!section.isEmpty() && eq > 0)
            s.sections_[section].insert(line.left(eq).trimmed(), line.mid(eq + 1));
    }
    return s;
}

QString DesktopSettings::Value(const QString &section, const QString &key, const QString &otherwise) const {
    return sections_.value(section).value(key, otherwise);
}

bool DesktopSettings::Has(const QString &section, const QString &key) const {
    return sections_.value(section).contains(key);
}

void DesktopSettings::Set(const QString &section, const QString &key, const QString &value) {
    sections_[section].insert(key, value);
}

void DesktopSettings::Save() const {
    QByteArray text;
    for (auto s = sections_.cbegin(); s != sections_.cend(); ++s) {
        if (!text.isEmpty()) text += '\n';
        text += (QLatin1Char('[') + s.key() + QLatin1Char(']')).toUtf8() + '\n';
        for (auto it = s->cbegin(); it != s->cend(); ++it)
            text += (it.key() + QLatin1Char('=') + it.value()).toUtf8() + '\n';
    }
    SafeFile::Save(DesktopSettingsPath(), text);
}

QString EscapeLine(const QString &text) {
    QString out;
    out.reserve(text.size());
    for (QChar c : text) {
        if (c == QLatin1Char('\\'))
            out += QLatin1String("\\\\");
        else if (c == QLatin1Char('\n'))
            out += QLatin1String("\\n");
        else if (c == QLatin1Char('\r'))
            out += QLatin1String("\\r");
        else
            out += c;
    }
    return out;
}

QString UnescapeLine(const QString &line) {
    QString out;
    out.reserve(line.size());
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c != QLatin1Char('\\') || i + 1 == line.size()) {
            out += c;
            continue;
        }
        const QChar n = line[++i];
        // An unknown pair stands as it is: a hand-edited file loses nothing.
        if (n == QLatin1Char('n'))
            out += QLatin1Char('\n');
        else if (n == QLatin1Char('r'))
            out += QLatin1Char('\r');
        else if (n == QLatin1Char('\\'))
            out += n;
        else
            out += c, out += n;
    }
    return out;
}
}  // namespace fm
