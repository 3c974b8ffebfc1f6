#pragma once
// The main window started on a day's log in a test's own folder, "Com 1" linked to a
// pseudo-terminal nobody answers on; nullptr when the start failed.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "support/test_env.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSize>
#include <QTest>

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

// Closes the main window as the exit does, with nothing left to save.
inline void CloseMain(frmMain *m) {
    if (!m) return;
    Data().DataSaved = true;
    ShutDown(m);
    delete m;
}

// File > Open, the dialog answered with `file` under the filter given.
inline void OpenFromMenu(frmMain *m, const QString &file, int filter = 1) {
    CommonDialog::SetResponder([=](const CommonDialog &, bool save) -> std::optional<CommonDialog::Answer> {
        if (save) return std::nullopt;
        return CommonDialog::Answer{file, filter};
    });
    m->mnuSubFile[0]->trigger();
    CommonDialog::SetResponder(nullptr);
    QTest::qWait(20);  // the views closed by the load go
}

// The view of that kind standing open; one closed and waiting to be deleted is not it.
template <class Form>
Form *Shown(frmMain *m) {
    for (QMdiSubWindow *w : m->mdiArea->subWindowList())
        if (auto *f = qobject_cast<Form *>(w->widget()); f && w->isVisible()) return f;
    return nullptr;
}
}  // namespace fm::test
