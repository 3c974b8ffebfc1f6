#pragma once
// Every message to the user goes through this box: an icon, a centred text and one
// or two buttons whose texts come from the language store.
#include "core/host.h"

#include <QDialog>

class QLabel;
class QPushButton;

namespace fm {

class frmMessageBox : public QDialog {
    Q_OBJECT
public:
    explicit frmMessageBox(QWidget *owner);
    QLabel *lblMessage;
    QLabel *imgIcona;
    QPushButton *btnOK;
    QPushButton *btnCancel;
    bool Answer = false;

protected:
    void resizeEvent(QResizeEvent *) override;

private:
    void Place();
};

// icon: 0 error, 1 warning, 2 information, -1 as 0; mode: 0 yes/no, 1 OK, 2 OK/cancel,
// -1 as 1. True when the first button closed the box.
bool MessBox(const QString &text, const QString &title = {}, int icon = -1, int mode = -1);

// The boxes that do not come from the language store (faults, start-up checks): a modal
// window over `owner`, or over the screen when there is none. True only for a "yes".
bool SystemMessageBox(const QString &text, const QString &title, SystemBoxKind kind, QWidget *owner);

} // namespace fm
