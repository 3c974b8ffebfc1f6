#pragma once
// Progress of long transfers. The user cannot close it: only the program does.
#include <QDialog>

class QLabel;
class QFrame;
class QProgressBar;

namespace fm {
class frmWait : public QDialog {
    Q_OBJECT
public:
    explicit frmWait(QWidget *parent);
    QLabel *lblProgress;
    QFrame *pctProgress;
    QFrame *shpProgress;
    // The share of the reply received so far, shown once its length is known.
    QLabel *lblShare;
    QProgressBar *prgShare;
    void SetText(const QString &text);
    // `received` of `total` bytes; total 0 while the length is not known. Repaints at once.
    void SetShare(int received, int total);
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
