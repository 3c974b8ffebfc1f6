#include "shell/widgets/source_view.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

namespace fm {

SourceView::SourceView(QWidget *parent) : QAbstractScrollArea(parent) {
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPointSizeF(9);
    setFont(mono);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
}

int SourceView::LineHeight() const { return fontMetrics().lineSpacing(); }

void SourceView::SetList(std::unique_ptr<DataList> list) {
    list_ = std::move(list);
    current_ = -1;
    marked_ = -1;
    UpdateScroll();
    verticalScrollBar()->setValue(0);
    viewport()->update();
}

// The scroll bar counts lines, so a million rows stay within its range.
void SourceView::UpdateScroll() {
    const int64_t lines = list_ ? list_->LineCount() : 0;
    const int page = qMax(1, viewport()->height() / LineHeight());
    verticalScrollBar()->setRange(0, int(qMax<int64_t>(0, lines - page)));
    verticalScrollBar()->setPageStep(page);
    horizontalScrollBar()->setRange(0, qMax(0, fontMetrics().horizontalAdvance(QLatin1Char('0')) * 90 - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
}

void SourceView::resizeEvent(QResizeEvent *) { UpdateScroll(); }

void SourceView::paintEvent(QPaintEvent *) {
    if (!list_) return;
    QPainter p(viewport());
    const int h = LineHeight();
    const int64_t first = verticalScrollBar()->value();
    const int x = 4 - horizontalScrollBar()->value();
    QFont bold = font();
    bold.setBold(true);
    for (int row = 0; row * h < viewport()->height() + h; ++row) {
        const int64_t line = first + row;
        if (line >= list_->LineCount()) break;
        const QRect r(0, row * h, viewport()->width(), h);
        if (line == current_) p.fillRect(r, palette().highlight());
        const bool marked = line == marked_;
        p.setFont(marked ? bold : font());
        p.setPen(line == current_ ? palette().highlightedText().color() : marked ? QColor(255, 0, 0) : palette().text().color());
        p.drawText(x, row * h + fontMetrics().ascent(), list_->Line(line));
    }
}

void SourceView::SelectLine(int64_t line) {
    if (!list_ || line < 0 || line >= list_->LineCount()) return;
    current_ = line;
    const int page = verticalScrollBar()->pageStep();
    const int64_t top = verticalScrollBar()->value();
    if (line < top || line >= top + page) verticalScrollBar()->setValue(int(qMax<int64_t>(0, line - page / 2)));
    viewport()->update();
    emit currentLineChanged(line);
}

void SourceView::mousePressEvent(QMouseEvent *e) {
    SelectLine(verticalScrollBar()->value() + int64_t(e->position().y()) / LineHeight());
}

void SourceView::keyPressEvent(QKeyEvent *e) {
    const int page = verticalScrollBar()->pageStep();
    switch (e->key()) {
    case Qt::Key_Up: SelectLine(qMax<int64_t>(0, current_ - 1)); break;
    case Qt::Key_Down: SelectLine(current_ + 1); break;
    case Qt::Key_PageUp: SelectLine(qMax<int64_t>(0, current_ - page)); break;
    case Qt::Key_PageDown: SelectLine(qMin<int64_t>(list_ ? list_->LineCount() - 1 : 0, current_ + page)); break;
    case Qt::Key_Home: SelectLine(0); break;
    case Qt::Key_End: if (list_) SelectLine(list_->LineCount() - 1); break;
    default: QAbstractScrollArea::keyPressEvent(e);
    }
}

} // namespace fm
