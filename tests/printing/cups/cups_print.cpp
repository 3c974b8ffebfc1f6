// The time chart on a real print queue, as a person prints it: the print button, the
// queue picked in the system's print dialog, "Print" in the preview; then the PDF the
// queue's cups-pdf backend made. with_private_cups.sh starts that queue and runs this.
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "printing/widgets/print_job.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <unistd.h>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace fm;

namespace {
// Exit code and standard output of a tool; -1 when it did not run.
std::pair<int, QString> Run(const QString &tool, const QStringList &args) {
    QProcess p;
    p.start(tool, args);
    if (!p.waitForFinished(15000) || p.exitStatus() != QProcess::NormalExit) return {-1, {}};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput())};
}
}  // namespace

class CupsPrintTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    frmMain *m_ = nullptr;
    QString queue_ = qEnvironmentVariable("FLUXMERE_CUPS_QUEUE");
    QString out_ = qEnvironmentVariable("FLUXMERE_CUPS_PDF_DIR");
    // What the dialogs saw; members, as the timers answering them may outlive a failed step.
    bool chosen_ = false, previewed_ = false;

private slots:
    void initTestCase() {
        if (queue_.isEmpty() || out_.isEmpty())
            QSKIP("needs the queue that tests/printing/cups/with_private_cups.sh starts");
        SetWritableDir(dir_.path());
        OptionsRecord o = OptionsRecord::Defaults();
        o.FirstRun = false;
        o.OpenGraphTe = true;
        test::WriteBytes(OptionsPath(), o.ToBytes());
        m_ = test::StartOnDayLog(dir_.path(), &pty_, QSize(1200, 900));
        QVERIFY(m_);
        QVERIFY(test::Shown<frmGraphTe>(m_));
    }
    void cleanupTestCase() {
        if (!m_) return;
        Data().DataSaved = true;
        ShutDown(m_);
        delete m_;
        ::close(pty_);
    }

    void theChartComesOutOfTheQueueAsAPdf() {
        // Qt's CUPS print support finds the queue through CUPS_SERVER.
        QVERIFY2(QPrinterInfo::availablePrinterNames().contains(queue_),
                 qPrintable(QStringLiteral("Qt lists no queue %1 (its CUPS print support plugin missing?): %2")
                                .arg(queue_, QPrinterInfo::availablePrinterNames().join(QLatin1Char(',')))));
        test::WhenUp<QPrintDialog>(
            [this](QPrintDialog *dialog) {
                auto *printers = dialog->findChild<QComboBox *>(QStringLiteral("printers"));
                const int at = printers ? printers->findText(queue_) : -1;
                if (at < 0) {
                    dialog->reject();
                    return;
                }
                printers->setCurrentIndex(at);
                chosen_ = true;
                test::WhenUp<QDialog>(
                    [this](QDialog *preview) {
                        if (preview->objectName() != QLatin1String("frmPrintPreview")) {
                            qWarning("%s came up instead of the preview", qPrintable(preview->windowTitle()));
                            preview->reject();
                            return;
                        }
                        previewed_ = true;
                        QTest::mouseClick(preview->findChild<QPushButton *>(QStringLiteral("btnPrint")), Qt::LeftButton);
                    },
                    3000);
                dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
            },
            3000);  // a loaded machine takes its time
        QToolBar *bar = test::Shown<frmGraphTe>(m_)->tbrGraphTe;
        for (QAction *a : bar->actions())
            if (a->toolTip() == ResString(4143)) QTest::mouseClick(bar->widgetForAction(a), Qt::LeftButton);
        QVERIFY2(chosen_, "the print dialog did not offer the queue");
        QVERIFY2(previewed_, "no preview came up");
        // The dialog's choice is the application's printer from now on.
        QCOMPARE(CurrentPrinter().printerName(), queue_);
        QCOMPARE(CurrentPrinter().outputFormat(), QPrinter::NativeFormat);

        // The job was queued when printing returned; done once the queue holds no job.
        QElapsedTimer waited;
        waited.start();
        for (;;) {
            const auto [code, jobs] = Run(QStringLiteral("lpstat"), {QStringLiteral("-o"), queue_});
            QVERIFY2(code == 0, "lpstat cannot reach the private CUPS");
            if (jobs.trimmed().isEmpty()) break;
            QVERIFY2(waited.elapsed() < 25000, qPrintable(QStringLiteral("the job is still queued: ") + jobs));
            QTest::qWait(200);
        }
        const QStringList pdfs = QDir(out_).entryList({QStringLiteral("*.pdf")}, QDir::Files);
        QVERIFY2(pdfs.size() == 1, qPrintable(QStringLiteral("in %1: %2").arg(out_, pdfs.join(QLatin1Char(',')))));
        const QString pdf = QDir(out_).filePath(pdfs.first());

        const QString info = Run(QStringLiteral("pdfinfo"), {pdf}).second;
        QVERIFY2(info.contains(QStringLiteral("Ghostscript")), qPrintable(info));  // made by the backend, not by us
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages:\\s+1\\n"))), qPrintable(info));
        const QString text = Run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")})
                                 .second.normalized(QString::NormalizationForm_KC);
        QVERIFY2(text.contains(ResString(4083) + QStringLiteral(" ID - Cabina")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("Fluxmere QL540. SW Rev. ")), qPrintable(text));
    }
};

QTEST_MAIN(CupsPrintTest)
#include "cups_print.moc"
