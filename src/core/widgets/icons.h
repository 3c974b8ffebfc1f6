#pragma once
// The application's pictures, from the icon resources: icons drawn by Qt at the size
// and pixel ratio they are shown at, pictures at the screen's pixel ratio.
#include <QIcon>
#include <QPixmap>

namespace fm {
QIcon ToolbarImage(int index);          // 1 to 17
QPixmap StatusImage(int index, int px = 16);   // pctImage(0..6)
QPixmap MessageImage(int icon, int px = 32);   // 0 error, 1 warning, 2 information
QIcon MessageIcon(int icon);
QPixmap InfoImage(const char *name, int px = 16);
QPixmap MarkImage(int px);  // the axes of the logo
} // namespace fm
