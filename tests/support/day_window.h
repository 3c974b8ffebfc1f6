#pragma once
// The main window started on a day's log in a test's own folder, "Com 1" linked to a
// pseudo-terminal nobody answers on; nullptr when the start failed.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "support/test_env.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSize>

namespace fm::test {
inline frmMain *StartOnDayLog(const QString &dir, int *pty, QSize size) {
    SetWritableDir(dir);
    *pty = LinkPtyAsCom1(dir);
    if (*pty < 0) return nullptr;
    Data() = MeasurementData{};
    const QString log = dir + QStringLiteral("/day.log");
    WriteDayLog(log, 144);  // ten-minute steps from 8 in the morning round the clock
    if (!StartUp(0, {QStringLiteral("-L"), log})) return nullptr;
    if (frmMain *m = MainForm()) m->resize(size);
    return MainForm();
}

// The view of that kind standing open; one closed and waiting to be deleted is not it.
template <class Form>
Form *Shown(frmMain *m) {
    for (QMdiSubWindow *w : m->mdiArea->subWindowList())
        if (auto *f = qobject_cast<Form *>(w->widget()); f && w->isVisible()) return f;
    return nullptr;
}
}  // namespace fm::test
