#include "core/fault.h"

#include "core/host.h"

namespace fm {

QString FaultSource() { return QStringLiteral("Fluxmere"); }

QString FaultDescription(int number) {
    switch (number) {
    case 5: return QStringLiteral("Invalid procedure call or argument");
    case 6: return QStringLiteral("Overflow");
    case 7: return QStringLiteral("Out of memory");
    case 9: return QStringLiteral("Subscript out of range");
    case 11: return QStringLiteral("Division by zero");
    case 13: return QStringLiteral("Type mismatch");
    case 51: return QStringLiteral("Internal error");
    case 52: return QStringLiteral("Bad file name or number");
    case 53: return QStringLiteral("File not found");
    case 54: return QStringLiteral("Bad file mode");
    case 55: return QStringLiteral("File already open");
    case 57: return QStringLiteral("Device I/O error");
    case 61: return QStringLiteral("Disk full");
    case 62: return QStringLiteral("Input past end of file");
    case 70: return QStringLiteral("Permission denied");
    case 75: return QStringLiteral("Path/File access error");
    case 76: return QStringLiteral("Path not found");
    case 8002: return QStringLiteral("Invalid port number");
    case 8005: return QStringLiteral("Port already open");
    default: return QStringLiteral("Application-defined or object-defined error");
    }
}

void Raise(int number, const QString &description) {
    throw Fault{number, FaultSource(), description.isEmpty() ? FaultDescription(number) : description};
}

bool ErrorHandler(const QString &procedure, int number, const QString &source,
                  const QString &description, bool canIgnore) {
    // Built from fixed English lines, never from the language store: it must work when
    // that store is missing.
    try {
        const QString crlf = QStringLiteral("\r\n");
        QString text = QStringLiteral("An unpredictable error occurred.") + crlf;
        text += QStringLiteral("Error Raised by  : ") + procedure + crlf;
        text += QStringLiteral("Error Source     : ") + source + crlf;
        text += QStringLiteral("Error Number     : ") + QString::number(number) + crlf;
        text += QStringLiteral("Error Description: ") + description + crlf;
        const QString title = QStringLiteral("ERROR! (") + FaultSource() + QStringLiteral(")");
        if (canIgnore) {
            text += crlf + QStringLiteral("It may be possible to proceed.") + crlf +
                    QStringLiteral("Do you want to ignore the error?") + crlf;
            return Host().SystemBox(text, title, SystemBoxKind::CriticalYesNo);
        }
        Host().SystemBox(text, title, SystemBoxKind::CriticalOk);
        return false;
    } catch (...) {
        try {
            Host().SystemBox(QStringLiteral("Error on Error Handler!!! "), QString(),
                             SystemBoxKind::CriticalOk);
        } catch (...) {
        }
        return false;
    }
}

} // namespace fm
