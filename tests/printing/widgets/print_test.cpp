// Printing as a person does it: the print button, the system's print dialog (printer,
// orientation, selection), the preview, then the page in a PDF file read back with
// poppler's tools.
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "printing/widgets/exposure_report.h"
#include "printing/widgets/print_chart.h"
#include "printing/widgets/print_job.h"
#include "printing/widgets/printer_page.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <unistd.h>
#include <QAbstractButton>
#include <QBuffer>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPdfWriter>
#include <QPrintPreviewWidget>
#include <QDir>
#include <QPointer>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace fm;

namespace {
// Runs the next modal window that is not `other` through `act`.
void WhenDialog(std::function<void(QWidget *)> act, QWidget *other = nullptr) {
    auto left = std::make_shared<int>(3000);  // a loaded machine takes its time
    auto poll = std::make_shared<std::function<void()>>();
    // A dialog gone may leave its address to the next one.
    *poll = [act, left, poll, other = QPointer<QWidget>(other)] {
        QWidget *w = QApplication::activeModalWidget();
        if (w && w != other && w->isVisible()) {
            act(w);
            return;
        }
        if (--*left > 0) QTimer::singleShot(10, *poll);
        else qWarning("no dialog came up");
    };
    QTimer::singleShot(0, *poll);
}

// "Options >>" in whichever language Qt speaks.
QAbstractButton *ButtonEnding(QWidget *w, const QString &end) {
    for (auto *b : w->findChildren<QAbstractButton *>())
        if (b->isVisible() && b->text().endsWith(end)) return b;
    return nullptr;
}

// On its round button, where a person aims.
void ClickRadio(QAbstractButton *radio) {
    QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(7, radio->height() / 2));
    QVERIFY(radio->isChecked());
}

struct Choice {
    QString pdf;
    bool landscape = false;
    bool selection = false;
    bool cancel = false;
    int from = 0, to = 0;  // "Pages from" when given
};

// The print dialog as a person fills it in: "Print to File (PDF)", the file's name, the
// orientation under Properties, the selection under Options.
void AnswerPrintDialog(const Choice &c, int *previewPages) {
    WhenDialog([c, previewPages](QWidget *dialog) {
        if (c.cancel) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        auto *printers = dialog->findChild<QComboBox *>(QStringLiteral("printers"));
        printers->setCurrentIndex(printers->count() - 1);
        auto *file = dialog->findChild<QLineEdit *>(QStringLiteral("filename"));
        // The file offered is named after the log and what prints.
        QVERIFY2(QRegularExpression(QStringLiteral("/day-(TE|ST|list|exposure)\\.pdf$")).match(file->text()).hasMatch(),
                 qPrintable(file->text()));
        file->selectAll();
        QTest::keyClicks(file, c.pdf);
        if (c.landscape) {
            WhenDialog(
                [](QWidget *props) {
                    auto *landscape = props->findChild<QAbstractButton *>(QStringLiteral("landscape"));
                    ClickRadio(landscape);
                    props->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
                },
                dialog);
            QTest::mouseClick(dialog->findChild<QAbstractButton *>(QStringLiteral("properties")), Qt::LeftButton);
        }
        if (c.selection) {
            if (QAbstractButton *more = ButtonEnding(dialog, QStringLiteral(">>"))) QTest::mouseClick(more, Qt::LeftButton);
            auto *radio = dialog->findChild<QAbstractButton *>(QStringLiteral("printSelection"));
            auto *tabs = dialog->findChild<QTabWidget *>(QStringLiteral("tabs"));
            tabs->setCurrentIndex(tabs->indexOf(dialog->findChild<QWidget *>(QStringLiteral("copiesTab"))));
            QVERIFY(radio->isVisible() && radio->isEnabled());
            ClickRadio(radio);
        }
        if (c.from) {
            if (QAbstractButton *more = ButtonEnding(dialog, QStringLiteral(">>"))) QTest::mouseClick(more, Qt::LeftButton);
            ClickRadio(dialog->findChild<QAbstractButton *>(QStringLiteral("printRange")));
            for (auto [name, value] : {std::pair{"from", c.from}, std::pair{"to", c.to}}) {
                auto *box = dialog->findChild<QSpinBox *>(QString::fromLatin1(name));
                box->selectAll();
                QTest::keyClicks(box, QString::number(value));
            }
        }
        // The preview comes next; "Print" there writes the file.
        WhenDialog(
            [previewPages](QWidget *preview) {
                QCOMPARE(preview->objectName(), QStringLiteral("frmPrintPreview"));
                QTest::qWait(50);
                *previewPages = preview->findChild<QPrintPreviewWidget *>()->pageCount();
                test::Snapshot(preview, QStringLiteral("print_preview"));
                QTest::mouseClick(preview->findChild<QPushButton *>(QStringLiteral("btnPrint")), Qt::LeftButton);
            },
            dialog);
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
}

QString Run(const char *tool, const QStringList &args) {
    QProcess p;
    p.start(QString::fromLatin1(tool), args);
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput()).normalized(QString::NormalizationForm_KC);
}
QString PdfText(const QString &pdf) {
    return Run("pdftotext", {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
}
QString PdfInfo(const QString &pdf) {
    return Run("pdfinfo", {pdf});
}
}  // namespace

class PrintTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    frmMain *m_ = nullptr;

    QString Pdf(const char *name) { return dir_.filePath(QString::fromLatin1(name)); }
    void PressPrint(QToolBar *bar) {
        for (QAction *a : bar->actions())
            if (a->toolTip() == ResString(4143) || a->toolTip() == ResString(4148))
                QTest::mouseClick(bar->widgetForAction(a), Qt::LeftButton);
    }
    // The print button of a view, answered as `c` says; the preview's page count.
    int Print(QToolBar *bar, const Choice &c) {
        int pages = -1;
        AnswerPrintDialog(c, &pages);
        PressPrint(bar);
        QTest::qWait(20);
        return pages;
    }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        OptionsRecord o = OptionsRecord::Defaults();
        o.FirstRun = false;
        o.OpenGraphTe = o.OpenGraphSt = o.OpenSource = true;
        test::WriteBytes(OptionsPath(), o.ToBytes());
        m_ = test::StartOnDayLog(dir_.path(), &pty_, QSize(1200, 900));
        QVERIFY(m_);
        QVERIFY(test::Shown<frmGraphTe>(m_) && test::Shown<frmGraphSt>(m_) && test::Shown<frmSource>(m_));
    }
    void cleanupTestCase() {
        Data().DataSaved = true;
        ShutDown(m_);
        delete m_;
        ::close(pty_);
    }

    void theTimeChartPrintsItsPageInEitherOrientation() {
        frmGraphTe *te = test::Shown<frmGraphTe>(m_);
        te->teeEvolution->ShowCross(3, 10);
        const QSize size = te->teeEvolution->size();
        for (bool landscape : {false, true}) {
            const QString pdf = Pdf(landscape ? "time-landscape.pdf" : "time.pdf");
            QCOMPARE(Print(te->tbrGraphTe, {pdf, landscape}), 1);
            const QString text = PdfText(pdf);
            QVERIFY2(text.contains(ResString(4083) + QStringLiteral(" ID - Cabina")), qPrintable(text));
            QVERIFY2(text.contains(QStringLiteral("[ 144 ") + ResString(4031)), qPrintable(text));
            QVERIFY(text.contains(ResString(4081) + QStringLiteral(" 10 ") + ResString(3012) + QStringLiteral(" ]")));
            QVERIFY(text.contains(QStringLiteral("Fluxmere QL540. SW Rev. ")));
            QVERIFY(text.contains(ResString(349)));
            QVERIFY(text.contains(ResString(3041)));  // the legend prints with the time chart
            QVERIFY(PdfInfo(pdf).contains(landscape ? QStringLiteral("842 x 595 pts (A4)")
                                                    : QStringLiteral("595 x 842 pts (A4)")));
        }
        // The window on the screen is as it was: its size, its cross, no legend.
        QCOMPARE(te->teeEvolution->size(), size);
        QVERIFY(te->teeEvolution->CrossVisible());
        QVERIFY(!te->teeEvolution->Plot()->legend->visible());
    }

    void theStatisticsChartPrintsWithoutLegend() {
        frmGraphSt *st = test::Shown<frmGraphSt>(m_);
        const QString pdf = Pdf("stats.pdf");
        QCOMPARE(Print(st->tbrGraphSt, {pdf}), 1);
        const QString text = PdfText(pdf);
        QVERIFY(text.contains(ResString(3037)));
        QVERIFY(!text.contains(ResString(3041)));
    }

    void aCancelPrintsNothing() {
        const QString pdf = Pdf("never.pdf");
        QCOMPARE(Print(test::Shown<frmGraphTe>(m_)->tbrGraphTe, {pdf, false, false, true}), -1);
        QVERIFY(!QFile::exists(pdf));
    }

    void theListPrintsWholeOrItsSelection() {
        frmSource *list = test::Shown<frmSource>(m_);
        SourceView *view = list->txtSource;
        const QString whole = Pdf("list.pdf");
        view->SelectLine(-1);
        const int pages = Print(list->tbrGraphSrc, {whole});
        QVERIFY(pages > 1);
        QVERIFY(PdfInfo(whole).contains(QStringLiteral("Pages:           %1").arg(pages)));
        const QString all = PdfText(whole);
        QVERIFY(all.contains(view->List()->Line(0)));
        const QString last = view->List()->Line(view->List()->LineCount() - 1);
        QVERIFY2(all.contains(last.left(last.indexOf(QLatin1Char(' '), 12))), qPrintable(last));

        // Page 2 alone: neither the heading nor the last row.
        const QString second = Pdf("second.pdf");
        Choice page2{second};
        page2.from = page2.to = 2;
        QCOMPARE(Print(list->tbrGraphSrc, page2), 1);
        const QString two = PdfText(second);
        QVERIFY(!two.trimmed().isEmpty());
        QVERIFY(!two.contains(view->List()->Line(0)));
        QVERIFY(!two.contains(last.left(last.indexOf(QLatin1Char(' '), 12))));

        // Three rows picked with the keyboard, then "Selection" in the dialog.
        const int64_t first = view->List()->HeadingLines() + 20;
        view->SelectLine(first);
        QTest::keyClick(view, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(view, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(view->SelectionEnd() - view->SelectionStart(), 2);
        const QString part = Pdf("selection.pdf");
        QCOMPARE(Print(list->tbrGraphSrc, {part, false, true}), 1);
        const QString text = PdfText(part);
        QVERIFY2(text.contains(view->List()->Line(first).left(19)), qPrintable(text));
        QVERIFY(!text.contains(view->List()->Line(0)));
        QCOMPARE(text.trimmed().split(QLatin1Char('\n')).size(), 3);
    }

    // A real print queue, where tests/printing/cups/with_private_cups.sh has started one:
    // the queue picked in the dialog, then the PDF its cups-pdf backend made.
    void aPageThroughAPrintQueue() {
        const QString queue = qEnvironmentVariable("FLUXMERE_CUPS_QUEUE"), out = qEnvironmentVariable("FLUXMERE_CUPS_PDF_DIR");
        if (queue.isEmpty()) QSKIP("no print queue: with_private_cups.sh runs this with one");
        QVERIFY2(QPrinterInfo::availablePrinterNames().contains(queue), "Qt's CUPS support lists no such queue");
        bool previewed = false;
        WhenDialog([&](QWidget *dialog) {
            auto *printers = dialog->findChild<QComboBox *>(QStringLiteral("printers"));
            printers->setCurrentIndex(printers->findText(queue));
            WhenDialog([&](QWidget *preview) {
                previewed = preview->objectName() == QLatin1String("frmPrintPreview");
                QTest::mouseClick(preview->findChild<QPushButton *>(QStringLiteral("btnPrint")), Qt::LeftButton);
            }, dialog);
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        });
        PressPrint(test::Shown<frmGraphTe>(m_)->tbrGraphTe);
        QVERIFY(previewed);
        QCOMPARE(CurrentPrinter().printerName(), queue);  // the dialog's choice stays the printer
        // Queued when printing returned; done once the queue holds no job.
        for (int waited = 0; !Run("lpstat", {QStringLiteral("-o"), queue}).trimmed().isEmpty(); waited += 200) {
            QVERIFY2(waited < 25000, "the job is still queued");
            QTest::qWait(200);
        }
        const QStringList pdfs = QDir(out).entryList({QStringLiteral("*.pdf")}, QDir::Files);
        QCOMPARE(pdfs.size(), 1);
        const QString pdf = QDir(out).filePath(pdfs.first());
        QVERIFY(PdfInfo(pdf).contains(QStringLiteral("Ghostscript")));  // made by the backend, not by us
        QVERIFY(PdfText(pdf).contains(ResString(4083) + QStringLiteral(" ID - Cabina")));
    }

    // The exposure report takes the road of every print: the dialog offers "day-exposure.pdf",
    // the preview shows its pages, and its PDF holds them. Without a measurement, a message.
    void theExposureReportTakesThePrintRoad() {
        ExposureChoice choice{QStringLiteral("Via Roma 12"), QString(), {*FindReference(u"it-quality")}};
        const QString pdf = Pdf("exposure.pdf");
        int pages = -1;
        AnswerPrintDialog({pdf}, &pages);
        PrintExposureReport(choice);
        QVERIFY(pages >= 2);
        QVERIFY(PdfInfo(pdf).contains(QStringLiteral("Pages:           %1").arg(pages)));
        QVERIFY(PdfInfo(pdf).contains(QStringLiteral("595 x 842 pts (A4)")));
        const QString text = PdfText(pdf);
        QVERIFY2(text.contains(ResString(4440)), qPrintable(text));
        QVERIFY(text.contains(QStringLiteral("Via Roma 12")));
        QVERIFY(text.contains(ResString(4433).arg(pages).arg(pages)));

        Data().DataPresent = false;
        QString said;
        test::WhenModal([&](QWidget *w) {
            if (auto *box = qobject_cast<frmMessageBox *>(w)) said = box->lblMessage->text();
            w->close();
        });
        PrintExposureReport(choice);
        Data().DataPresent = true;
        QCOMPARE(said, ResString(4468));
    }

    // A title wider than the page prints smaller; the lines after it at their own size.
    void aLongTitleShrinksAlone() {
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        QPdfWriter pdf(&out);
        SetStandardLayout(pdf, QPageSize(QPageSize::A4), false);
        PrinterPage page(&pdf);
        QVERIFY(page.Begin());
        page.SetFontSize(12);
        const QString title = QString(200, QLatin1Char('W'));
        QVERIFY(page.TextWidth(title) + 100 > page.ScaleWidth());
        const double y = page.CurrentY;
        PrintLine(page, title, 2);
        const double printed = page.CurrentY - y;  // the height of the smaller line
        QCOMPARE(page.FontSize(), 12.0);
        QVERIFY(printed < page.TextHeight());
        page.EndDoc();
    }
};

QTEST_MAIN(PrintTest)
#include "print_test.moc"
