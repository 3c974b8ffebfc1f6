#pragma once
// The time evolution chart: X, Y, Z and the resultant against time, with the threshold.
#include <QWidget>
#include <array>

class QCheckBox;
class QLabel;
class QPushButton;
class QToolBar;
class QMdiSubWindow;

namespace fm {
class ChartControl;

class frmGraphTe : public QWidget {
    Q_OBJECT
public:
    explicit frmGraphTe(QWidget *parent = nullptr);
    ~frmGraphTe() override;
    // The chart that stands open, or nullptr; one closed a moment ago is not it.
    static frmGraphTe *Current();
    ChartControl *teeEvolution;
    std::array<QLabel *, 4> lblDescrizione{}, Linea{};
    std::array<QCheckBox *, 4> chkHidePlot{};
    QCheckBox *chkLogaritmic;
    QPushButton *btnFullScale, *btnShowRf;
    QToolBar *tbrGraphTe;
    void GraphSetup();
    void DrawGraph();
    // The red cross on the point of a sample (from the data list): sample 0 (a heading
    // line), one past the end or one without data hides it; a hidden resultant keeps it.
    void GetChartPoint(int32_t sample);
    // The cross on point p of the resultant; false, and nothing changes, while that
    // trace is hidden.
    bool CrossOnPoint(int32_t point);
    void SaveImage();

protected:
    void showEvent(QShowEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    void Unload();
};

QMdiSubWindow *ShowGraphTe();
}  // namespace fm
