#pragma once
// The findings on the data set, one line each with the picture of its level.
#include <QWidget>

class QTreeWidget;

namespace fm {
class frmWarnings : public QWidget {
    Q_OBJECT
public:
    explicit frmWarnings(QWidget *parent = nullptr);
    QTreeWidget *trwWarning;
    // Rebuilds the list from the last findings.
    void Refresh();
    void AddString(const QString &text, int level);
    // A close by the user hides the window; this lets the program's own close through.
    void CloseByCode();

signals:
    void hiddenByUser();

protected:
    void closeEvent(QCloseEvent *e) override;

private:
    bool byCode_ = false;
};
} // namespace fm
