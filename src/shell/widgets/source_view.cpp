#include "shell/widgets/source_view.h"

#include "core/host.h"
#include "core/language.h"
#include "core/regional.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
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
    viewport()->setCursor(Qt::IBeamCursor);
}

int SourceView::LineHeight() const { return fontMetrics().lineSpacing(); }

void SourceView::SetList(std::unique_ptr<DataList> list) {
    list_ = std::move(list);
    current_ = anchor_ = marked_ = -1;
    UpdateScroll();
    verticalScrollBar()->setValue(0);
    viewport()->update();
}

// The scroll bar counts lines, so ten million rows stay within its range.
void SourceView::UpdateScroll() {
    const int64_t lines = list_ ? list_->LineCount() : 0;
    const int page = qMax(1, viewport()->height() / LineHeight());
    verticalScrollBar()->setRange(0, int(qMax<int64_t>(0, lines - page)));
    verticalScrollBar()->setPageStep(page);
    const int columns = 60 + (list_ ? list_->DateWidth() : 30);
    horizontalScrollBar()->setRange(
        0, qMax(0, fontMetrics().horizontalAdvance(QLatin1Char('0')) * columns - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
}

void SourceView::resizeEvent(QResizeEvent *) { UpdateScroll(); }

void SourceView::paintEvent(QPaintEvent *) {
    if (!list_) return;
    QPainter p(viewport());
    const int h = LineHeight();
    const int64_t first = verticalScrollBar()->value();
    const int x = 4 - horizontalScrollBar()->value();
    const int64_t lo = SelectionStart(), hi = SelectionEnd();
    QFont bold = font();
    bold.setBold(true);
    QString text;
    for (int row = 0; row * h < viewport()->height() + h; ++row) {
        const int64_t line = first + row;
        if (line >= list_->LineCount()) break;
        const QRect r(0, row * h, viewport()->width(), h);
        const bool selected = line >= lo && line <= hi;
        if (selected) p.fillRect(r, palette().highlight());
        const bool marked = line == marked_;
        p.setFont(marked ? bold : font());
        p.setPen(selected ? palette().highlightedText().color()
                 : marked ? QColor(255, 0, 0)
                          : palette().text().color());
        text.clear();
        list_->AppendPaddedLine(line, text);
        p.drawText(x, row * h + fontMetrics().ascent(), text);
    }
}

// From the chart: the line comes to the middle of the view when it is out of sight.
void SourceView::SelectLine(int64_t line) {
    if (!list_ || line < 0 || line >= list_->LineCount()) return;
    const int page = verticalScrollBar()->pageStep();
    const int64_t top = verticalScrollBar()->value();
    if (line < top || line >= top + page) verticalScrollBar()->setValue(int(qMax<int64_t>(0, line - page / 2)));
    MoveTo(line, false);
}

void SourceView::MoveTo(int64_t line, bool extend) {
    if (!list_ || list_->LineCount() == 0) return;
    line = qBound<int64_t>(0, line, list_->LineCount() - 1);
    if (!extend || anchor_ < 0) anchor_ = line;
    current_ = line;
    const int page = verticalScrollBar()->pageStep();
    const int64_t top = verticalScrollBar()->value();
    // The user's own moves scroll no more than they must.
    if (line < top)
        verticalScrollBar()->setValue(int(line));
    else if (line >= top + page)
        verticalScrollBar()->setValue(int(line - page + 1));
    viewport()->update();
    emit currentLineChanged(line);
}

void SourceView::SelectAll() {
    if (!list_ || list_->LineCount() == 0) return;
    // The view stays where it is; the current line goes to the end as in a text box.
    anchor_ = 0;
    current_ = list_->LineCount() - 1;
    viewport()->update();
}

QString SourceView::SelectedText() const {
    return list_ && current_ >= 0 ? list_->Text(SelectionStart(), SelectionEnd()) : QString();
}

bool SourceView::Copy() {
    if (!list_ || current_ < 0) return false;
    const int64_t lines = SelectionEnd() - SelectionStart() + 1;
    if (lines > kMaxCopyLines) {
        Host().MessBox(ResString(4422).arg(Str(lines), Str(kMaxCopyLines)), {}, 1, 1);
        return false;
    }
    QGuiApplication::clipboard()->setText(SelectedText());
    return true;
}

int64_t SourceView::LineAt(int y) const {
    const int h = LineHeight();
    const int row = y < 0 ? (y - h + 1) / h : y / h;
    return verticalScrollBar()->value() + row;
}

void SourceView::mousePressEvent(QMouseEvent *e) {
    const int64_t line = LineAt(int(e->position().y()));
    if (e->button() == Qt::RightButton) {
        // A right click inside the selection keeps it for the menu's Copy.
        if (line < SelectionStart() || line > SelectionEnd()) MoveTo(line, false);
        return;
    }
    if (e->button() == Qt::LeftButton) MoveTo(line, e->modifiers() & Qt::ShiftModifier);
}

void SourceView::mouseMoveEvent(QMouseEvent *e) {
    if (e->buttons() & Qt::LeftButton) MoveTo(LineAt(int(e->position().y())), true);
}

void SourceView::keyPressEvent(QKeyEvent *e) {
    if (e->matches(QKeySequence::Copy)) {
        Copy();
        return;
    }
    if (e->matches(QKeySequence::SelectAll)) {
        SelectAll();
        return;
    }
    const int page = verticalScrollBar()->pageStep();
    const bool extend = e->modifiers() & Qt::ShiftModifier;
    const int64_t last = list_ ? list_->LineCount() - 1 : 0;
    switch (e->key()) {
        case Qt::Key_Up:
            MoveTo(current_ - 1, extend);
            break;
        case Qt::Key_Down:
            MoveTo(current_ + 1, extend);
            break;
        case Qt::Key_PageUp:
            MoveTo(current_ - page, extend);
            break;
        case Qt::Key_PageDown:
            MoveTo(current_ + page, extend);
            break;
        case Qt::Key_Home:
            MoveTo(0, extend);
            break;
        case Qt::Key_End:
            MoveTo(last, extend);
            break;
        default:
            QAbstractScrollArea::keyPressEvent(e);
    }
}

// Copy and select all belong to the list while it has the focus, not to the menus.
bool SourceView::event(QEvent *e) {
    if (e->type() == QEvent::ShortcutOverride) {
        auto *k = static_cast<QKeyEvent *>(e);
        if (k->matches(QKeySequence::Copy) || k->matches(QKeySequence::SelectAll)) {
            e->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(e);
}

QMenu *SourceView::MakeMenu() {
    auto *menu = new QMenu(this);
    QAction *copy = menu->addAction(ResString(4420), this, &SourceView::Copy);
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(current_ >= 0);
    QAction *all = menu->addAction(ResString(4421), this, &SourceView::SelectAll);
    all->setShortcut(QKeySequence::SelectAll);
    all->setEnabled(list_ && list_->LineCount() > 0);
    return menu;
}

void SourceView::contextMenuEvent(QContextMenuEvent *e) {
    QMenu *menu = MakeMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(e->globalPos());
}

} // namespace fm
