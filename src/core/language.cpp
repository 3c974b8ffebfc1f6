#include "core/language.h"

#include "core/app_paths.h"
#include "core/fault.h"
#include "core/regional.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QResource>
#include <QTranslator>

namespace fm {
namespace {
constexpr auto kRoot = "/fluxmere/language";
constexpr int kLanguageStride = 5000;

struct Store {
    QString path;  // the registered resource file; empty while none is loaded
    QHash<int, QString> texts;  // offset + number -> text
    int offset = 0;
};

Store &S() {
    static Store store;
    return store;
}

QString Unescape(QStringView s) {
    QString out;
    out.reserve(s.size());
    for (qsizetype i = 0; i < s.size(); ++i) {
        if (s[i] == QLatin1Char('\\') && i + 1 < s.size()) {
            const QChar n = s[++i];
            out += n == QLatin1Char('n') ? QChar(QLatin1Char('\n'))
                   : n == QLatin1Char('t') ? QChar(QLatin1Char('\t'))
                                           : n;
        } else {
            out += s[i];
        }
    }
    return out;
}

bool Parse(const QByteArray &table, QHash<int, QString> &texts) {
    const QString all = QString::fromUtf8(table);
    for (QStringView line : QStringView(all).split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r'))) line.chop(1);
        if (line.isEmpty()) continue;
        const auto cols = line.split(QLatin1Char('\t'));
        bool ok = false;
        const int number = cols.value(0).toInt(&ok);
        if (!ok || cols.size() < 3) return false;
        // The length cap of the older string tables: 1023 characters in effect.
        texts.insert(number, Unescape(cols[1]).left(1023));
        texts.insert(kLanguageStride + number, Unescape(cols[2]).left(1023));
    }
    return !texts.isEmpty();
}
} // namespace

bool InitLibrary(const QString &name) {
    return Trap("InitLibrary", false, [&] {
        if (!S().path.isEmpty()) FreeResLibrary();
        const QString path = DataDir() + QLatin1Char('/') + name;
        if (!QFile::exists(path) || !QResource::registerResource(path, QString::fromLatin1(kRoot))) return false;
        QFile table(QStringLiteral(":%1/fluxmere/language/strings.tsv").arg(QString::fromLatin1(kRoot)));
        QHash<int, QString> texts;
        if (!table.open(QIODevice::ReadOnly) || !Parse(table.readAll(), texts)) {
            QResource::unregisterResource(path, QString::fromLatin1(kRoot));
            return false;
        }
        S().path = path;
        S().texts = std::move(texts);
        return true;
    });
}

void SetLanguage(int index) {
    S().offset = index * kLanguageStride;
    UseQtTranslations(index);
}

int SystemLanguage() { return QLocale::system().language() == QLocale::Italian ? 0 : 1; }

bool UseQtTranslations(int index) {
    static QPointer<QTranslator> installed;
    if (!QCoreApplication::instance()) return false;
    if (installed) {
        QCoreApplication::removeTranslator(installed);
        delete installed;
    }
    if (index != 0) return true;  // Qt speaks English by itself
    // Owned by the application, so that it goes with it.
    auto *t = new QTranslator(QCoreApplication::instance());
    if (!t->load(QLocale(QLocale::Italian), QStringLiteral("qt"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath)) ||
        !QCoreApplication::installTranslator(t)) {
        delete t;
        return false;
    }
    installed = t;
    return true;
}

QString ResString(int number) {
    if (S().path.isEmpty()) return {};
    return S().texts.value(S().offset + number);
}

void FreeResLibrary() {
    TrapVoid("FreeResLibrary", [] {
        if (S().path.isEmpty()) return;
        QResource::unregisterResource(S().path, QString::fromLatin1(kRoot));
        S().path.clear();
        S().texts.clear();
    });
}

int TagNumber(const QString &tag) {
    const double v = Val(tag);
    return v >= -32768 && v <= 32767 ? int(v) : 0;
}
} // namespace fm
