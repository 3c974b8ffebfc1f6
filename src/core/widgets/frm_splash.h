#pragma once
// The splash window: fixed English texts, since it comes up before the language store.
#include <QWidget>

class QLabel;
class QFrame;

namespace fm {
class Logo;

class frmSplash : public QWidget {
    Q_OBJECT
public:
    frmSplash();
    QLabel *lblVersion, *lblDescription, *lblMessages, *pctRight;
    Logo *imgLogo;
    QFrame *Shape1;
    // Sets the progress line and repaints it at once.
    void Message(const QString &text);
};
} // namespace fm
