#include "core/widgets/set_up_form.h"

#include "core/fault.h"
#include "core/language.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QVariant>

namespace fm {

void SetTag(QObject *object, int number) { object->setProperty("Tag", QString::number(number)); }
QString Tag(const QObject *object) { return object->property("Tag").toString(); }
void SetTabTags(QObject *tabStrip, const QStringList &tags) { tabStrip->setProperty("TabTags", tags); }

namespace {
QString TagText(const QString &tag) { return ResString(TagNumber(tag)); }

void ApplyTabs(QWidget *w) {
    const QStringList tags = w->property("TabTags").toStringList();
    auto *tabs = qobject_cast<QTabWidget *>(w);
    auto *bar = qobject_cast<QTabBar *>(w);
    for (int i = 0; i < tags.size(); ++i) {
        if (tabs && i < tabs->count()) tabs->setTabText(i, TagText(tags[i]));
        if (bar && i < bar->count()) bar->setTabText(i, TagText(tags[i]));
    }
}
} // namespace

void SetUpForm(QWidget *form) {
    TrapVoid("SetUpForm", [&] {
        if (!Tag(form).isEmpty()) form->setWindowTitle(TagText(Tag(form)));
        for (QWidget *w : form->findChildren<QWidget *>()) {
            const QString tag = Tag(w);
            if (tag.isEmpty()) continue;
            if (qobject_cast<QTabWidget *>(w) || qobject_cast<QTabBar *>(w)) {
                ApplyTabs(w);
                continue;
            }
            const QString t = TagText(tag);
            if (auto *e = qobject_cast<QLineEdit *>(w)) e->setText(t);
            else if (auto *te = qobject_cast<QTextEdit *>(w)) te->setPlainText(t);
            else if (auto *pe = qobject_cast<QPlainTextEdit *>(w)) pe->setPlainText(t);
            else if (auto *l = qobject_cast<QLabel *>(w)) l->setText(t);
            else if (auto *b = qobject_cast<QAbstractButton *>(w)) b->setText(t);
            else if (auto *g = qobject_cast<QGroupBox *>(w)) g->setTitle(t);
        }
    });
}

void DialogFrame(QWidget *dialog) {
    dialog->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
}

} // namespace fm
