#pragma once
// A read-only text view over the data list's lines, drawn only where they show, so a
// list of ten million rows opens at once and scrolls smoothly. It offers what the list
// window needs of a text control: the current line, a selection of whole lines that is
// copied as the list's own text, and one marked line.
#include "shell/data_list.h"

#include <QAbstractScrollArea>
#include <memory>

class QMenu;

namespace fm {
class SourceView : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit SourceView(QWidget *parent = nullptr);
    void SetList(std::unique_ptr<DataList> list);
    const DataList *List() const { return list_.get(); }
    int64_t CurrentLine() const { return current_; }
    // Selects a whole line and scrolls it into view.
    void SelectLine(int64_t line);
    // The selection runs from the anchor to the current line, both included; -1 for none.
    int64_t SelectionStart() const { return current_ < 0 ? -1 : std::min(anchor_, current_); }
    int64_t SelectionEnd() const { return current_ < 0 ? -1 : std::max(anchor_, current_); }
    void SelectAll();
    // The selected lines as the saved list writes them; false when there is nothing
    // to copy or too much for the clipboard (the user is told).
    bool Copy();
    QString SelectedText() const;
    // The median's line, in bold red.
    void SetMarkedLine(int64_t line) { marked_ = line; viewport()->update(); }
    int64_t MarkedLine() const { return marked_; }
    // The context menu, made on each request (for the tests as well).
    QMenu *MakeMenu();
    // More lines than this are not put on the clipboard: the list is saved instead.
    static constexpr int64_t kMaxCopyLines = 1'000'000;

signals:
    void currentLineChanged(int64_t line);

protected:
    bool event(QEvent *e) override;
    void paintEvent(QPaintEvent *) override;
    void resizeEvent(QResizeEvent *) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseMoveEvent(QMouseEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;
    void contextMenuEvent(QContextMenuEvent *e) override;

private:
    void MoveTo(int64_t line, bool extend);
    int64_t LineAt(int y) const;
    void UpdateScroll();
    int LineHeight() const;
    std::unique_ptr<DataList> list_;
    int64_t current_ = -1, anchor_ = -1, marked_ = -1;
};
} // namespace fm
