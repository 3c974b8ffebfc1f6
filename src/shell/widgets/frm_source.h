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
    // The list that stands open, or nullptr. One closed a moment ago is not it, even
    // while its window still waits to be deleted.
    static frmSource *Current();
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
    // From chart point p (sample p + 1): the cross on the point and its row selected,
    // whichever of the two windows stands open. In value order nothing moves.
    static void GetSourceRow(int32_t point);

protected:
    void showEvent(QShowEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    // The selected line's sample to the chart's cross (the list in time order only).
    void GetChartPoint(int64_t line);
    void Unload();
};

// Builds and shows the data list in the main window; nullptr without data.
QMdiSubWindow *ViewDataSource(bool chronological);
} // namespace fm
