#pragma once
// The exposure window: the figures of the loaded measurement against the threshold of the
// options, its 24-hour medians and hourly profile, and verdicts against the references
// the user ticks, with the report of them on paper or as a PDF file.
#include "analysis/exposure.h"
#include "shell/exposure_prefs.h"

#include <QWidget>
#include <vector>

class QCheckBox;
class QComboBox;
class QCustomPlot;
class QLabel;
class QLineEdit;
class QMdiSubWindow;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace fm {
class frmExposure : public QWidget {
    Q_OBJECT
public:
    explicit frmExposure(QWidget *parent = nullptr);
    ~frmExposure() override;
    // The window that stands open, or nullptr.
    static frmExposure *Current();

    QLabel *lblHighest, *lblMaximum, *lblMean, *lblAboveCaption, *lblAbove, *lblLongest;
    QLabel *lblPercentiles;  // P50, P90, P95, P99 on one line
    QTableWidget *grdPeriods;
    QCustomPlot *pltHours;
    struct ReferenceRow {
        QCheckBox *check;
        QLabel *verdict;
    };
    std::vector<ReferenceRow> references;  // the built-in ones, in their order
    QCheckBox *chkOwn;
    QLineEdit *txtOwnName, *txtOwnValue;
    QComboBox *cboOwnBasis;
    QLabel *lblOwnVerdict;
    QLineEdit *txtSite;
    QPlainTextEdit *txtNotes;
    QPushButton *btnReport, *btnPrint;

    // The figures again, at the threshold the options hold now.
    void Recompute();
    // What the controls hold.
    ExposurePrefs Prefs() const;
    void SaveReport();
    void PrintReport();

protected:
    void showEvent(QShowEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    QWidget *FiguresPanel();
    QWidget *ReferencesPanel();
    void ShowFigures();
    void ShowVerdicts();
    void Remember();
    void Unload();
    ExposureFigures figures_;
    ExposurePrefs saved_;
};

QMdiSubWindow *ShowExposure();
}  // namespace fm
