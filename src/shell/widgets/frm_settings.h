#pragma once
// The user's options on four tabs; written into the options record on OK.
#include <QDialog>
#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace fm {
class frmSettings : public QDialog {
    Q_OBJECT
public:
    explicit frmSettings(QWidget *parent);
    QTabWidget *tabOptions;
    QComboBox *cboLanguage, *cboMemorySize;
    QCheckBox *chkConnected, *chkWarnOnDate, *chkWarnData;
    std::array<QCheckBox *, 3> chkOnLoad{};
    std::array<QPushButton *, 8> pctColor{};  // squares showing their colour
    std::array<uint32_t, 8> colors{};         // 0x00BBGGRR of each square
    std::array<QRadioButton *, 4> optSoglia{};
    QLineEdit *txtSoglia;
    QPushButton *btnOk, *btnCancel;
    void btnOk_Click();
    // The custom threshold as the field corrects it on leaving: 0 to 200.
    void LeaveSoglia();

private:
    void ShowColor(int i);
};
} // namespace fm
