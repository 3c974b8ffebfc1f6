#pragma once
// The standard editing keys (copy, cut, paste, select all, undo, redo) belong to the text
// or edit box that has the focus (the data list takes copy and select all itself); the
// menus' shortcuts on the same keys work everywhere else. Installed on the application.
#include <QObject>

class QKeyEvent;

namespace fm {
class EditKeys : public QObject {
public:
    using QObject::QObject;
    // Whether `key` is an editing key that the widget takes for itself.
    static bool Owns(const QObject *widget, const QKeyEvent *key);

protected:
    bool eventFilter(QObject *watched, QEvent *e) override;
};
}  // namespace fm
