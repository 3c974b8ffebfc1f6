#pragma once
// Progress of long transfers. The user cannot close it: only the program does.
#include <QDialog>

class QLabel;
class QFrame;

namespace fm {
class frmWait : public QDialog {
    Q_OBJECT
public:
    explicit frmWait(QWidget *parent);
    QLabel *lblProgress;
    QFrame *pctProgress;
    QFrame *shpProgress;
    void SetText(const QString &text);
    // Moves the block by `step` units, turning back at either end; repaints at once.
    void Animate(int step);
    // The program's own close.
    void Finish();

protected:
    void closeEvent(QCloseEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;

private:
    bool closing_ = false;
    int direction_ = 1;
};
} // namespace fm
