#pragma once
// What the views of a measurement share: their place among the main window's children
// and a caption that names the file on show.
#include <QSize>
#include <QString>

class QMdiSubWindow;
class QWidget;

namespace fm {
// Adds the form as a child of the main window, closed for good when the user closes it.
QMdiSubWindow *AddView(QWidget *form, int icon, QSize size);
// Moves and, if need be, shrinks a child window so that it lies wholly in the area
// that shows the child windows.
void KeepInside(QMdiSubWindow *w);
// The caption of text `tag`, with the file of the measurement in brackets.
QString ViewCaption(int tag);
}  // namespace fm
