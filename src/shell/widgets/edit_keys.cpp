#include "shell/widgets/edit_keys.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace fm {

bool EditKeys::Owns(const QObject *w, const QKeyEvent *k) {
    static const QKeySequence::StandardKey keys[] = {QKeySequence::Copy,  QKeySequence::Cut,
                                                     QKeySequence::Paste, QKeySequence::SelectAll,
                                                     QKeySequence::Undo,  QKeySequence::Redo};
    bool editing = false;
    for (auto key : keys) editing = editing || k->matches(key);
    if (!editing) return false;
    const auto *combo = qobject_cast<const QComboBox *>(w);
    return qobject_cast<const QLineEdit *>(w) || qobject_cast<const QTextEdit *>(w) ||
           qobject_cast<const QPlainTextEdit *>(w) || qobject_cast<const QAbstractSpinBox *>(w) ||
           (combo && combo->isEditable());
}

// Accepting the override hands the key to the widget as a key press, not to the menus.
bool EditKeys::eventFilter(QObject *watched, QEvent *e) {
    if (e->type() == QEvent::ShortcutOverride && watched == QApplication::focusWidget() &&
        Owns(watched, static_cast<QKeyEvent *>(e))) {
        e->accept();
        return true;
    }
    return QObject::eventFilter(watched, e);
}

}  // namespace fm
