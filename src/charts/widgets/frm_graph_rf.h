#pragma once
// The RF field of a "File Centralina" file against time: one trace in V/m, with the
// threshold line, zoom and the cross that the data list moves.
#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QToolBar;
class QMdiSubWindow;

namespace fm {
class ChartControl;

class frmGraphRf : public QWidget {
    Q_OBJECT
public:
    explicit frmGraphRf(QWidget *parent = nullptr);
    ~frmGraphRf() override;
    // The chart that stands open, or nullptr; one closed a moment ago is not it.
    static frmGraphRf *Current();
    ChartControl *teeEvolution;
    QLabel *lblDescrizione, *Linea;
    QCheckBox *chkHidePlot;
    QPushButton *btnFullScale;
    QToolBar *tbrGraphTe;
    void GraphSetup();
    void DrawGraph();
    // The cross on the point of a sample, as on the time chart.
    void GetChartPoint(int32_t sample);
    bool CrossOnPoint(int32_t point);
    void SaveImage();

protected:
    void showEvent(QShowEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    void Unload();
};

// Shows the RF chart, or brings the open one forward; nullptr without such data.
QMdiSubWindow *ShowGraphRf();
}  // namespace fm
