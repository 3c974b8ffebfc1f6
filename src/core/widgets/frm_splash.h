#pragma once
// The splash window: fixed English texts, since it comes up before the language store.
#include <QWidget>

class QLabel;
class QFrame;

namespace fm {
class frmSplash : public QWidget {
    Q_OBJECT
public:
    frmSplash();
    QLabel *lblVersion, *lblDescription, *lblMessages, *imgLogo, *pctRight;
    QFrame *Shape1;
    // Sets the progress line and repaints it at once.
    void Message(const QString &text);
};
} // namespace fm
