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
} // namespace fm
