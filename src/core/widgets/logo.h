#pragma once
// The program's logo: the three-axis mark and the name. The name is a text in its own
// label, so the font it is drawn with also sizes it and it is never cut off.
#include <QWidget>

class QLabel;

namespace fm {
class Logo : public QWidget {
    Q_OBJECT
public:
    // height: of the mark, in pixels; the name is set a little smaller than that.
    Logo(int height, QWidget *parent);
    QLabel *imgMark, *lblName;
};
} // namespace fm
