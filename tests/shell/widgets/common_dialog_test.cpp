// The save dialog as a user types into it: a name without an extension takes the
// chosen filter's before the question about replacing a file.
#include "shell/widgets/common_dialog.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

namespace {
QLineEdit *NameBox(QFileDialog *d) {
    return d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
}
}  // namespace

class CommonDialogTest : public QObject {
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

QTEST_MAIN(CommonDialogTest)
#include "common_dialog_test.moc"
