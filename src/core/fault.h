#pragma once
// Run-time faults. A procedure traps every fault at its boundary, reports it through
// ErrorHandler with its own name and leaves with false: no exception crosses a
// procedure's boundary. The numbers are the classic run-time error numbers, so a
// technician can quote them to support the same way as on the older platform.
#include <QString>
#include <exception>
#include <new>

namespace fm {

struct Fault {
    int number = 0;
    QString source;
    QString description;
};

namespace err {
inline constexpr int InvalidCall = 5;      // Invalid procedure call or argument
inline constexpr int Overflow = 6;         // Overflow
inline constexpr int OutOfMemory = 7;      // Out of memory
inline constexpr int Subscript = 9;        // Subscript out of range
inline constexpr int TypeMismatch = 13;    // Type mismatch
inline constexpr int FileNotFound = 53;    // File not found
inline constexpr int InputPastEnd = 62;    // Input past end of file
inline constexpr int PermissionDenied = 70;
inline constexpr int PathAccess = 75;      // Path/File access error
inline constexpr int PathNotFound = 76;
inline constexpr int DeviceIO = 57;        // Device I/O error
inline constexpr int DiskFull = 61;
} // namespace err

// The text the platform gives for a fault number.
QString FaultDescription(int number);

// Raises the fault `number` with the platform's description (or the one given).
[[noreturn]] void Raise(int number, const QString &description = {});

// The name under which faults of this program are reported as their source.
QString FaultSource();

bool ErrorHandler(const QString &procedure, int number, const QString &source,
                  const QString &description, bool canIgnore = false);

// Runs body; any fault or exception is reported under `procedure` and yields `onFault`.
template <class R, class F>
R Trap(const char *procedure, R onFault, F &&body) {
    try {
        return body();
    } catch (const Fault &f) {
        ErrorHandler(QString::fromLatin1(procedure), f.number, f.source, f.description);
    } catch (const std::bad_alloc &) {
        ErrorHandler(QString::fromLatin1(procedure), err::OutOfMemory, FaultSource(),
                     FaultDescription(err::OutOfMemory));
    } catch (const std::exception &e) {
        ErrorHandler(QString::fromLatin1(procedure), 51, FaultSource(),
                     QString::fromLocal8Bit(e.what()));
    }
    return onFault;
}

// For procedures without a result.
template <class F>
void TrapVoid(const char *procedure, F &&body) {
    Trap(procedure, 0, [&] {
        body();
        return 0;
    });
}

} // namespace fm
