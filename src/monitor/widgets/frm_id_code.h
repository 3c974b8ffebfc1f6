#pragma once
// Reads and writes the logger's two identification codes.
#include <QDialog>

class QLineEdit;
class QPushButton;
class QLabel;
class QGroupBox;

namespace fm {
class frmIDCode : public QDialog {
    Q_OBJECT
public:
    explicit frmIDCode(QWidget *parent);
    QGroupBox *fmeIDSet;
    QLabel *lblIDShort, *lblIDLong;
    QLineEdit *txtIDShort, *txtIDLong;
    QPushButton *btnReadID, *btnWriteID, *btnCancel;
    // Reads the codes from the logger into the boxes (as the dialog does when it opens).
    void Load();
    void btnWriteID_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
} // namespace fm
