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
    ChartControl *teeEvolution;
    std::array<QLabel *, 4> lblDescrizione{}, Linea{};
    std::array<QCheckBox *, 4> chkHidePlot{};
    QCheckBox *chkLogaritmic;
    QPushButton *btnFullScale, *btnShowRf;
    QToolBar *tbrGraphTe;
    void GraphSetup();
    void DrawGraph();
    // The red cross on the point of a sample (from the data list).
    void GetChartPoint(int32_t sample);
    void SaveImage();

signals:
    void pointClicked(int32_t point);

protected:
    void showEvent(QShowEvent *e) override;
};

QMdiSubWindow *ShowGraphTe();
}  // namespace fm
