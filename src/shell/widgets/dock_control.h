#pragma once
// The docking control that holds the information panel: docked at the side of the
// main window, floating, or hidden.
#include <QMap>
#include <QString>

class QDockWidget;
class QMainWindow;
class QWidget;

namespace fm {

class DockControl {
public:
    explicit DockControl(QMainWindow *owner) : owner_(owner) {}
    // Registers a form under its object name.
    void DockAdd(QWidget *form, int, int);
    void DockFlagA(const QString &, bool) {}
    void DockFlagB(const QString &, bool) {}
    int DockSizeA = 0, DockSizeB = 0;
    // 0 hidden, 1 docked, 2 floating.
    int DockState(const QString &key) const;
    void DockSetState(const QString &key, int state);
    void DockShow(const QString &key);
    void DockHide(const QString &key);
    QDockWidget *Dock(const QString &key) const { return docks_.value(key); }

private:
    QMainWindow *owner_;
    QMap<QString, QDockWidget *> docks_;
};

} // namespace fm
