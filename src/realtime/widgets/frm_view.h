#pragma once
// The real-time viewer: start and stop, the vector in an oblique three-axis drawing,
// its scale buttons, four level meters with their figures, and the strip chart.
#include "realtime/live_display.h"
#include "realtime/vector_geometry.h"

#include <QWidget>
#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QMdiSubWindow;
class QPushButton;

namespace fm {
class ChartControl;

// The picture box of the drawing: the fixed part kept as a picture, the moving part
// drawn over it.
class VectorSurface : public QWidget {
public:
    explicit VectorSurface(QWidget *parent);
    DrawArea area;
    VectorPlacement placement;
    QString caption = QStringLiteral("P (x,y,z)");
    void PreparaDisegno();

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QPixmap fixed_;
};

// One level meter: boxes in the range's colour, uncovered up to the reading.
class LevelMeter : public QWidget {
public:
    explicit LevelMeter(QWidget *parent);
    QColor color = QColor(0, 192, 0);
    double reading = 0;  // fraction of the width

protected:
    void paintEvent(QPaintEvent *) override;
};

class frmView : public QWidget, public LiveDisplay {
    Q_OBJECT
public:
    explicit frmView(QWidget *parent = nullptr);
    ~frmView() override;

    QPushButton *btnStartRealTime, *btnStopRealTime;
    QLabel *imgStato;
    VectorSurface *Disegno;
    std::array<QPushButton *, 9> MoltButton{};
    QGroupBox *fmeMeasures;
    std::array<LevelMeter *, 4> VMeter{};
    std::array<QLabel *, 4> VMStart{}, VMStop{}, Pval{};
    ChartControl *teeRealEvolution;
    std::array<QLabel *, 4> Label1{}, shpLine{};
    std::array<QCheckBox *, 4> chkShowTrace{};
    QCheckBox *chkAxisType, *chkBeeper;
    int ScaleIndex = 0;
    std::array<uint32_t, 4> MeterColor{};
    std::array<float, 4> MeterMax{};

    void MoltButton_Click(int index);
    void VMeterFill();
    void StartClicked();
    void StopClicked();
    // How many times the alarm sounded (for the tests).
    int beeps = 0;

    // LiveDisplay
    bool Active() const override;
    void ShowInfo(const InfoTexts &texts) override;
    void ClearChart() override;
    void SetButtons(bool live) override;
    void SetStatePicture(bool running) override;
    void AggiornaDisegno(float x, float y, float z, bool addToChart) override;

protected:
    void resizeEvent(QResizeEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    void ChartSetup();
};

QMdiSubWindow *ShowRealTimeView();
}  // namespace fm
