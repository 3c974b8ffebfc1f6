#pragma once
// Asks for the start date of an upload whose logger holds none.
#include <QDialog>

class QLabel;
class QPushButton;
class QCalendarWidget;
class QTimeEdit;

namespace fm {
class frmDate : public QDialog {
    Q_OBJECT
public:
    explicit frmDate(QWidget *parent);
    QLabel *lblDate;
    QPushButton *btnDate;
    QCalendarWidget *monDate;
    QTimeEdit *dtpTime;
    QPushButton *btnOk;
    QPushButton *btnAnnulla;
    QLabel *Label1, *lblDateText, *lblTimeText;
    // What the dialog left as start date (OLE date).
    double Result = 0;
};
// Shows frmDate modal and returns the date it leaves.
double AskStartDate(QWidget *parent);
} // namespace fm
