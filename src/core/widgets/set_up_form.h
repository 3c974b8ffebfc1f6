#pragma once
// Fills a window's captions from the language store. A window or control carries the
// number of its caption in its "Tag" property; an empty Tag keeps the designed caption.
#include <QString>
#include <QStringList>

class QWidget;
class QObject;

namespace fm {
void SetTag(QObject *object, int number);
QString Tag(const QObject *object);
// The tab captions of a tab strip, by their own Tags.
void SetTabTags(QObject *tabStrip, const QStringList &tags);
void SetUpForm(QWidget *form);
// A dialog's frame: a title and a close box, never the minimise and maximise boxes that
// window managers otherwise give every dialog.
void DialogFrame(QWidget *dialog);

// A control with its designed caption and the number of its text.
template <class T>
T *Tagged(QWidget *parent, const char *caption, int tag) {
    auto *w = new T(QString::fromUtf8(caption), parent);
    if (tag) SetTag(w, tag);
    return w;
}
} // namespace fm
