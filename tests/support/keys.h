#pragma once
// Keys as the desktop's keyboard types them, where QTest's own differ.
#include <QString>
#include <QTest>
#include <QWidget>

namespace fm::test {
// The X11 keyboard types DEL (127) with the Delete key; QTest sends no text for it.
inline void PressDelete(QWidget *w, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QTest::sendKeyEvent(QTest::Click, w, Qt::Key_Delete, QString(QChar(0x7F)), mods);
}
}  // namespace fm::test
