#pragma once
#include <QDialog>

class QLabel;
class QPushButton;

namespace fm {
class Logo;

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget *parent);
    QLabel *lblVersion, *lblEEprom, *lblComeTo, *lblDescription, *Label1, *pctRight;
    Logo *pctLogo;
    QPushButton *btnOK;
    int KeyCount = 0;
    // Whether Shift and Ctrl are both down; tests replace it.
    static bool (*ShiftCtrlDown)();

protected:
    void keyPressEvent(QKeyEvent *e) override;
};

// The credits window.
class frmHidden : public QDialog {
    Q_OBJECT
public:
    explicit frmHidden(QWidget *parent);
};
} // namespace fm
