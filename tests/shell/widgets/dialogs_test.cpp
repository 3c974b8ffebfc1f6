// The settings dialog: what it shows, what OK stores and what Cancel leaves. The save
// dialog as a user types into it: a name without an extension takes the chosen filter's
// before the question about replacing a file.
#include "core/app_paths.h"
#include "core/language.h"
#include "core/options.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_settings.h"
#include "support/keys.h"
#include "support/modal.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <utility>

using namespace fm;

namespace {
QLineEdit *NameBox(QFileDialog *d) {
    return d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
}
}  // namespace

class DialogsTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

    CommonDialog SaveImageDialog() {
        CommonDialog dlg;
        dlg.DialogTitle = QStringLiteral("Save picture");
        dlg.Filter = QStringLiteral("JPEG Image (*.jpg)|*.jpg|Windows Metafile (*.wmf)|*.wmf|All (*.*)|*.*");
        dlg.FilterIndex = 1;
        dlg.InitDir = dir_.path();
        dlg.Flags = 6;
        return dlg;
    }

private slots:
    void initTestCase() { test::WriteBytes(dir_.filePath(QStringLiteral("x.jpg")), "old picture"); }

    void showsAndStoresTheOptions() {
        test::Fresh fresh(1);
        test::RecorderHost host;
        Options().Soglia = 0.5f;
        Options().MemorySize = 8192;
        frmSettings dlg(nullptr);
        QVERIFY(dlg.optSoglia[1]->isChecked());
        QVERIFY(!dlg.txtSoglia->isEnabled());
        QCOMPARE(dlg.cboMemorySize->currentText(), QStringLiteral("64Kbit"));
        QVERIFY(dlg.chkOnLoad[1]->isChecked());  // OpenGraphTe by default
        dlg.resize(460, 380);
        test::Snapshot(&dlg, QStringLiteral("settings"));

        CommonDialog::SetColorResponder([](uint32_t) { return std::optional<uint32_t>(0x123456); });
        dlg.pctColor[7]->click();
        dlg.chkOnLoad[2]->setChecked(true);
        dlg.cboMemorySize->setCurrentIndex(3);
        dlg.btnOk_Click();
        QCOMPARE(Options().ColorSoglia, 0x123456u);
        QVERIFY(Options().OpenGraphSt);
        QCOMPARE(Options().MemorySize, 65536);
        QVERIFY(host.boxes.empty());  // no language question without a change

        // A custom threshold left out of range is pulled in: 250 becomes 200.
        frmSettings again(nullptr);
        again.txtSoglia->setText(QStringLiteral("250"));
        again.LeaveSoglia();
        QCOMPARE(again.txtSoglia->text(), QStringLiteral("200"));
        again.txtSoglia->setText(QStringLiteral("-1"));  // pasted
        again.LeaveSoglia();
        QCOMPARE(again.txtSoglia->text(), QStringLiteral("0"));
        CommonDialog::SetColorResponder(nullptr);
    }

    // A custom threshold is a float: it reopens as its own digits, and the box takes no
    // letters and edits with the keys of any text box.
    void customThresholdReopensAsTyped() {
        test::Fresh fresh(1);
        test::RecorderHost host;
        frmSettings dlg(nullptr);
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        QTabBar *tabs = dlg.tabOptions->tabBar();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(2).center());
        QTest::mouseClick(dlg.optSoglia[3], Qt::LeftButton, {}, QPoint(8, dlg.optSoglia[3]->height() / 2));
        QVERIFY(dlg.txtSoglia->isEnabled());
        QLineEdit *box = dlg.txtSoglia;
        box->setFocus();
        QTest::keyClicks(box, QStringLiteral("12,5x"));
        QTest::keyClick(box, Qt::Key_Home);
        test::PressDelete(box);
        QCOMPARE(box->text(), QStringLiteral("2.5"));
        QTest::keyClick(box, Qt::Key_End);
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClick(box, Qt::Key_Left);
        test::PressDelete(box);
        QCOMPARE(box->text(), QStringLiteral("2"));
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);  // select all, then delete it
        test::PressDelete(box);
        QCOMPARE(box->text(), QString());
        QTest::keyClicks(box, QStringLiteral("1,1"));
        QTest::keyClick(box, Qt::Key_Home, Qt::ShiftModifier);
        QCOMPARE(box->selectedText(), QStringLiteral("1.1"));
        QTest::keyClick(box, Qt::Key_End);
        QTest::mouseClick(dlg.btnOk, Qt::LeftButton);
        QCOMPARE(Options().Soglia, 1.1f);

        const std::pair<float, const char *> reopened[] = {
            {1.1f, " 1.1"}, {0.1f + 0.2f, " .3"}, {3.46f, " 3.46"}, {0.165f, " .165"}};
        for (const auto &[custom, text] : reopened) {
            Options().Soglia = custom;
            frmSettings again(nullptr);
            QVERIFY(again.optSoglia[3]->isChecked());
            QCOMPARE(again.txtSoglia->text(), QString::fromLatin1(text));
        }
    }

    void cancelKeepsAndLanguageAsks() {
        test::Fresh fresh(1);
        test::RecorderHost host;
        const uint32_t before = Options().ColorTrace1;
        {
            frmSettings dlg(nullptr);
            CommonDialog::SetColorResponder([](uint32_t) { return std::optional<uint32_t>(0x00FF00); });
            dlg.pctColor[0]->click();
            dlg.btnCancel->click();
            CommonDialog::SetColorResponder(nullptr);
        }
        QCOMPARE(Options().ColorTrace1, before);
        // A new language declined: stored, the window stays in the old one.
        Options().Language = 1;
        frmSettings dlg(nullptr);
        dlg.cboLanguage->setCurrentIndex(0);
        host.answers = {false};
        dlg.btnOk_Click();
        QCOMPARE(host.LastBox(), ResString(29));
        QCOMPARE(Options().Language, uint8_t(0));
    }

    void typedNameAsksAboutTheFileWithTheFiltersExtension() {
        CommonDialog dlg = SaveImageDialog();
        QString asked;
        bool stayedOpen = false;
        test::WhenUp<QFileDialog>([&](QFileDialog *fd) {
            test::WhenUp<QMessageBox>([&, fd](QMessageBox *box) {
                asked = box->text();
                QTimer::singleShot(0, fd, [&, fd] {
                    stayedOpen = fd->isVisible();
                    QTest::keyClick(NameBox(fd), Qt::Key_Escape);
                });
                QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
            });
            QTest::keyClicks(NameBox(fd), QStringLiteral("x"));
            QTest::keyClick(NameBox(fd), Qt::Key_Return);
        });
        QVERIFY(!dlg.ShowSave(nullptr));
        QVERIFY2(asked.contains(QStringLiteral("x.jpg")), qPrintable(asked));
        QVERIFY(stayedOpen);  // "No" goes back to the dialog
        QCOMPARE(test::ReadBytes(dir_.filePath(QStringLiteral("x.jpg"))), QByteArray("old picture"));

        // Yes replaces it: the caller gets the full name.
        test::WhenUp<QFileDialog>([&](QFileDialog *fd) {
            test::WhenUp<QMessageBox>(
                [](QMessageBox *box) { QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton); });
            QTest::keyClicks(NameBox(fd), QStringLiteral("x"));
            QTest::keyClick(NameBox(fd), Qt::Key_Return);
        });
        QVERIFY(dlg.ShowSave(nullptr));
        QCOMPARE(dlg.FileName, dir_.filePath(QStringLiteral("x.jpg")));
        QCOMPARE(dlg.FilterIndex, 1);
    }

    void extensionFollowsTheFilterChosen() {
        CommonDialog dlg = SaveImageDialog();
        bool asked = false;
        test::WhenUp<QFileDialog>([&](QFileDialog *fd) {
            test::WhenUp<QMessageBox>([&](QMessageBox *box) {
                asked = true;
                QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
            });
            auto *types = fd->findChild<QComboBox *>(QStringLiteral("fileTypeCombo"));
            types->setFocus();
            QTest::keyClick(types, Qt::Key_Down);  // the metafile filter
            QTest::keyClicks(NameBox(fd), QStringLiteral("x"));
            QTest::keyClick(NameBox(fd), Qt::Key_Return);
        });
        QVERIFY(dlg.ShowSave(nullptr));
        QCOMPARE(dlg.FileName, dir_.filePath(QStringLiteral("x.wmf")));
        QCOMPARE(dlg.FilterIndex, 2);
        QVERIFY(!asked);

        // "All files" adds nothing, and an extension typed stays as typed.
        const struct {
            const char *typed;
            Qt::Key filter;
            const char *saved;
        } cases[] = {{"notes", Qt::Key_End, "notes"}, {"y.jpeg", Qt::Key_Home, "y.jpeg"}};
        for (const auto &c : cases) {
            dlg.FileName.clear();
            test::WhenUp<QFileDialog>([&](QFileDialog *fd) {
                auto *types = fd->findChild<QComboBox *>(QStringLiteral("fileTypeCombo"));
                types->setFocus();
                QTest::keyClick(types, c.filter);
                QTest::keyClicks(NameBox(fd), QString::fromLatin1(c.typed));
                QTest::keyClick(NameBox(fd), Qt::Key_Return);
            });
            QVERIFY(dlg.ShowSave(nullptr));
            QCOMPARE(dlg.FileName, dir_.filePath(QString::fromLatin1(c.saved)));
        }
    }
};

QTEST_MAIN(DialogsTest)
#include "dialogs_test.moc"
