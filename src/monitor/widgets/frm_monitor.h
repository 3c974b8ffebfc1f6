#pragma once
// Programs a logging session: when it starts, when it stops and how often it samples.
#include "link/operations.h"

#include <QDialog>
#include <array>

class QCalendarWidget;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QLineEdit;
class QToolButton;
class QStackedWidget;
class QTimeEdit;

namespace fm {

class frmMonitor : public QDialog, public StartProgress {
    Q_OBJECT
public:
    explicit frmMonitor(QWidget *parent);
    // Reads the logger's settings and fills the form (the dialog's load).
    void Load();

    QStackedWidget *pages;
    QGroupBox *fmeMonitor, *fmeStep, *fmeStatus;
    std::array<QGroupBox *, 2> fmeDate{};
    std::array<QRadioButton *, 2> optStartDate{}, optStopDate{};
    std::array<QLabel *, 2> lblDate{}, lblDateText{}, lblTimeText{};
    std::array<QPushButton *, 2> btnDate{};
    std::array<QTimeEdit *, 2> dtpTime{};
    QCalendarWidget *monDate;
    QLineEdit *txtStepSize;
    QToolButton *updUp, *updDown;  // the up-down of the step, to 100
    int StepIncrement = 1;
    QComboBox *cboStepResolution;
    QLabel *lblStatus;
    QPushButton *btnStartMonitor, *btnStopMonitor, *btnReadSettings, *btnCancel;
    QWidget *fmeProgress;
    QLabel *lblTitle;
    std::array<QLabel *, 4> lblText{}, imgStatus{};
    QPushButton *btnClose;
    bool FormReady = false;
    int CalendarIndex = 0;
    bool WaitFlag = false;

    void ShowMonitorSettings(bool valid);
    void AutoCalculateDate();
    void SetStatus(int index, bool enabled);
    void btnStartMonitor_Click();
    void btnStopMonitor_Click();
    // The date and time of group i as an OLE date, when the caption is a date.
    bool GroupDate(int i, double *out) const;
    void ShowGroupDate(int i, double date);

    // StartProgress
    void Begin() override;
    void SetState(int step) override;
    void MarkFailed(int step) override;
    void WaitForClose() override;
    void End(bool started) override;

private:
    void StepRules();
    void UnitChanged();
    void UnitRules();  // at least 10 seconds, and the up-down's increment
    void ShowCalendarAt(QWidget *button);
    QString SelectedUnit() const;
};

} // namespace fm
