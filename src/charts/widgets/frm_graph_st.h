#pragma once
// The statistics chart: the share of the samples in each class of the resultant, in
// percent, between limits and with a number of classes the user sets.
#include <QWidget>
#include <array>

class QComboBox;
class QLabel;
class QLineEdit;
class QMdiSubWindow;
class QPushButton;
class QToolBar;
class QToolButton;

namespace fm {
class ChartControl;

class frmGraphSt : public QWidget {
    Q_OBJECT
public:
    explicit frmGraphSt(QWidget *parent = nullptr);
    ~frmGraphSt() override;
    // The chart that stands open, or nullptr.
    static frmGraphSt *Current();
    ChartControl *teeStatistics;
    std::array<QLabel *, 3> lblText{};
    QLineEdit *txtMinValue, *txtMaxValue;
    std::array<QToolButton *, 2> updMin{}, updMax{};  // up, down
    QComboBox *cboNumClassi;
    QPushButton *btnRefresh;
    QToolBar *tbrGraphSt;
    void GraphSetup();
    void DrawGraph();
    void Refresh();
    void SaveImage();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    void Unload();
};

QMdiSubWindow *ShowGraphSt();
}  // namespace fm
