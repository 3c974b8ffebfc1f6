#pragma once
// The key filter of the boxes that take a plain decimal number (statistics limits,
// custom threshold).
class QKeyEvent;
class QLineEdit;

namespace fm {
enum class NumberKey {
    Pass,   // let the box have it
    Drop,   // swallow it
    Point,  // swallow it and type "." instead
};

// Only what types a character is filtered: a digit passes, "." and "," become a
// point, any other character is dropped. Keys that type nothing printable pass, so
// Delete, Backspace, the arrows, Home and End, selection and Ctrl shortcuts edit the
// box as in any other.
NumberKey FilterNumberKey(const QKeyEvent &key);
// Filters the keys typed into `box` as above, for as long as it lives.
void InstallNumberKeys(QLineEdit *box);
}  // namespace fm
