#include "core/widgets/number_keys.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace fm {
NumberKey FilterNumberKey(const QKeyEvent &key) {
    const QString text = key.text();
    // Delete types DEL (127), which is above the control codes but prints nothing.
    if (text.isEmpty() || !text.at(0).isPrint()) return NumberKey::Pass;
    // Shortcuts (Ctrl+A, Ctrl+V) may carry their letter; AltGr is Ctrl+Alt on some systems.
    const Qt::KeyboardModifiers mods = key.modifiers();
    if ((mods & (Qt::ControlModifier | Qt::MetaModifier)) && !(mods & Qt::AltModifier))
        return NumberKey::Pass;
    const QChar c = text.at(0);
    if (c == QLatin1Char(',') || c == QLatin1Char('.')) return NumberKey::Point;
    return c >= QLatin1Char('0') && c <= QLatin1Char('9') ? NumberKey::Pass : NumberKey::Drop;
}

namespace {
class NumberKeys : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::KeyPress) return false;
        switch (FilterNumberKey(*static_cast<QKeyEvent *>(event))) {
            case NumberKey::Pass:
                return false;
            case NumberKey::Drop:
                return true;
            case NumberKey::Point:
                static_cast<QLineEdit *>(watched)->insert(QStringLiteral("."));
                return true;
        }
        return false;
    }
};
}  // namespace

void InstallNumberKeys(QLineEdit *box) {
    box->installEventFilter(new NumberKeys(box));
}
}  // namespace fm
