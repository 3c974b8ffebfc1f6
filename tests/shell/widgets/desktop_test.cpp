// The main window on a desktop screen: its size on opening, the information panel when
// the link comes up, child windows that stay in sight, the folders of the file dialogs
// and the title of the colour dialog.
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "shell/file_folders.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_settings.h"
#include "shell/widgets/main_entry.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <unistd.h>
#include <QDockWidget>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

class DesktopTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    QString log_;
    int pty_ = -1;

    frmMain *Start(int windowState = 0, const QStringList &args = {}, int language = 1) {
        OptionsRecord o = OptionsRecord::Defaults();
        o.Language = uint8_t(language);
        o.FirstRun = false;
        o.ShowWarnings = false;
        o.MainWindowState = int16_t(windowState);
        test::WriteBytes(OptionsPath(), o.ToBytes());
        Data() = MeasurementData{};
        if (!StartUp(0, args)) return nullptr;
        QTest::qWait(20);
        return MainForm();
    }
    static QList<QMdiSubWindow *> Shown(frmMain *m) {
        QList<QMdiSubWindow *> out;
        for (QMdiSubWindow *w : m->mdiArea->subWindowList())
            if (w->isVisible()) out << w;
        return out;
    }
    static QString Documents() {
        const QString docs = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        return QFileInfo(docs).isDir() ? docs : QDir::homePath();
    }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
        log_ = dir_.filePath(QStringLiteral("day.log"));
        test::WriteDayLog(log_, 200);
    }
    void cleanup() {
        CommonDialog::SetResponder(nullptr);
        Shared().CommOpen = false;
        Shared().MonitorState = -1;
        test::CloseMain(MainForm());
    }
    void cleanupTestCase() { ::close(pty_); }

    void opensToFitTheScreen() {
        frmMain *m = Start();
        QVERIFY(m);
        const QRect free = m->screen()->availableGeometry();
        QVERIFY(free.contains(m->geometry()));
        QCOMPARE(m->width(), int(free.width() * 0.8 + 0.5));
        QVERIFY(qAbs(m->geometry().center().x() - free.center().x()) <= 1);
    }

    // The panel kept growing with the session's state, and took the child windows' close
    // buttons off the right edge with it. The Italian states are the longer ones.
    void infoPanelKeepsItsWidthWhenTheLinkComesUp() {
        frmMain *m = Start(0, {QStringLiteral("-L"), log_}, 0);
        QVERIFY(m);
        QVERIFY(QTest::qWaitForWindowExposed(m));
        QDockWidget *dock = m->DockControl_.Dock(QStringLiteral("frmInfo"));
        QVERIFY(dock && dock->isVisible());
        const int before = dock->width();
        const int areaBefore = m->mdiArea->width();
        for (int state : {1, 0}) {
            Shared().CommOpen = true;
            Shared().MonitorState = state;
            m->UpdateInfo();
            QTest::qWait(30);
            QCOMPARE(dock->width(), before);
            QCOMPARE(m->mdiArea->width(), areaBefore);
            for (QLabel *l : {m->Info->lblMonitorStatus, m->Info->lblCommStatus})
                QVERIFY2(l->contentsRect().width() >= l->fontMetrics().horizontalAdvance(l->text()),
                         qPrintable(l->text()));
        }
        // A long value is cut at the edge and shown whole in its tooltip.
        Data().DataSource =
            QStringLiteral("/home/someone/") + QString(300, QLatin1Char('x')) + QStringLiteral(".log");
        m->UpdateInfo();
        m->Info->lblDataSource->grab();
        QCOMPARE(dock->width(), before);
        QCOMPARE(m->Info->lblDataSource->toolTip(), Data().DataSource);
        test::Snapshot(m, QStringLiteral("desktop_link_up"));
    }

    void childWindowsStayInSight() {
        frmMain *m = Start(0, {QStringLiteral("-L"), log_});
        QVERIFY(m);
        m->resize(760, 520);
        QTest::qWait(20);
        const QRect area = m->mdiArea->viewport()->rect();
        m->tbrToolbar_ButtonClick(14);  // F5: the statistics chart, larger than the area is high
        QMdiSubWindow *stats = m->mdiArea->activeSubWindow();
        QVERIFY(stats && stats->property("viewButton").toInt() == 14);
        QVERIFY(area.contains(stats->geometry()));
        m->tbrToolbar_ButtonClick(19);  // the warnings too: four windows in a low area
        m->resize(760, 420);
        QTest::qWait(20);
        m->tbrToolbar_ButtonClick(21);
        const QRect low = m->mdiArea->viewport()->rect();
        QCOMPARE(Shown(m).size(), 4);
        for (QMdiSubWindow *w : Shown(m)) QVERIFY2(low.contains(w->geometry()), qPrintable(w->windowTitle()));
        test::Snapshot(m, QStringLiteral("desktop_tiled_low"));
    }

    void maximisedStartTilesToTheMaximisedSize() {
        frmMain *m = Start(2, {QStringLiteral("-L"), log_});
        QVERIFY(m);
        QVERIFY(m->isMaximized());
        const QSize area = m->mdiArea->viewport()->size();
        int right = 0, bottom = 0;
        for (QMdiSubWindow *w : Shown(m)) {
            right = qMax(right, w->geometry().right() + 1);
            bottom = qMax(bottom, w->geometry().bottom() + 1);
        }
        QCOMPARE(right, area.width());
        QVERIFY2(area.height() - bottom < 4,
                 qPrintable(QStringLiteral("%1 of %2").arg(bottom).arg(area.height())));
    }

    void fileDialogsOpenInTheFolderOfTheirKind() {
        frmMain *m = Start(0, {QStringLiteral("-L"), log_});
        QVERIFY(m);
        Options().LastPath = OptionText(AppDir());  // as a first start leaves it
        QStringList opened;
        QString answer;
        CommonDialog::SetResponder([&](const CommonDialog &d, bool) -> std::optional<CommonDialog::Answer> {
            opened << QDir::cleanPath(d.InitDir);
            if (answer.isEmpty()) return std::nullopt;
            return CommonDialog::Answer{answer, 1};
        });
        frmGraphTe *chart = frmGraphTe::Current();
        QVERIFY(chart);
        chart->SaveImage();
        m->tbrToolbar_ButtonClick(2);
        m->tbrToolbar_ButtonClick(4);
        QCOMPARE(opened, QStringList(3, QDir::cleanPath(Documents())));

        const QString pictures = dir_.filePath(QStringLiteral("pictures")),
                      tables = dir_.filePath(QStringLiteral("tables"));
        QDir().mkpath(pictures);
        QDir().mkpath(tables);
        answer = pictures + QStringLiteral("/chart.jpg");
        chart->SaveImage();
        answer = tables + QStringLiteral("/table.csv");
        m->tbrToolbar_ButtonClick(4);
        QVERIFY(QFileInfo::exists(answer));
        answer.clear();
        opened.clear();
        chart->SaveImage();
        m->tbrToolbar_ButtonClick(4);
        m->tbrToolbar_ButtonClick(2);
        QCOMPARE(opened, (QStringList{pictures, tables, QDir::cleanPath(Documents())}));
        QCOMPARE(Options().LastPath.trimmed(), AppDir());  // an export leaves the logs' folder alone
    }

    // The colour dialog shares its properties with the file commands, and kept the title
    // of the last of them.
    void colourDialogHasItsOwnTitle() {
        frmMain *m = Start(0, {QStringLiteral("-L"), log_});
        QVERIFY(m);
        CommonDialog::SetResponder([](const CommonDialog &, bool) { return std::nullopt; });
        frmGraphTe::Current()->SaveImage();
        QCOMPARE(m->dlgFile.DialogTitle, ResString(3007));
        CommonDialog::SetResponder(nullptr);
        frmSettings settings(m);
        QString title;
        test::WhenModal([&](QWidget *w) {
            title = w->windowTitle();
            w->close();
        });
        settings.pctColor[0]->click();
        QCOMPARE(title, ResString(3060) + QStringLiteral(": ") + ResString(4062));
    }
};

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
