#pragma once
// The small panel that always tells what the application holds and how the link stands.
#include "shell/info_model.h"

#include <QWidget>
#include <array>

class QGroupBox;
class QLabel;

namespace fm {
class frmInfo : public QWidget {
    Q_OBJECT
public:
    explicit frmInfo(QWidget *parent = nullptr);
    QGroupBox *fmeData, *fmeMonitor;
    QLabel *lblDataSource, *lblNumData, *lblStep1, *lblStartDate1, *lblStopDate1;
    std::array<QLabel *, 4> lblValue{};
    QLabel *lblShortID1, *lblLongID1;
    QLabel *imgDataPresent, *imgSaved;
    QLabel *lblCommStatus, *lblMonitorStatus;
    // Rewrites every row from the shared state.
    void Refresh();
    void Show(const InfoTexts &texts);
};
}  // namespace fm
