#pragma once
// The data list window: the whole data set as text, by time or by value.
#include <QWidget>

class QLabel;
class QToolBar;
class QAction;
class QMdiSubWindow;

namespace fm {
class SourceView;

class frmSource : public QWidget {
    Q_OBJECT
public:
    explicit frmSource(QWidget *parent = nullptr);
    ~frmSource() override;
    SourceView *txtSource;
    QToolBar *tbrGraphSrc;
    QLabel *lblOrder;
    QAction *btnSave, *btnPrint, *btnClose, *btnOrder;
    bool ByValue = false;
    bool IsChronological() const { return !ByValue; }
    // Builds the list in the order asked for and marks the median's row.
    void ViewDataSource(bool chronological);
    void SwitchOrder();
    void SaveList();
    // Selects the row of chart point p (sample p + 1) while the list is by time.
    void GetSourceRow(int32_t point);

signals:
    // The sample of the selected row, for the chart's cross lines.
    void sampleSelected(int32_t sample);

protected:
    void showEvent(QShowEvent *e) override;
};

// Builds and shows the data list in the main window; nullptr without data.
QMdiSubWindow *ViewDataSource(bool chronological);
} // namespace fm
