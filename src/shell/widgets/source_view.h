#pragma once
// A read-only text view over the data list's lines, drawn only where they show, so a
// list of a million rows opens at once and scrolls smoothly. It offers what the list
// window needs of a text control: the current line, its selection, and one marked line.
#include "shell/data_list.h"

#include <QAbstractScrollArea>
#include <memory>

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
    // The median's line, in bold red.
    void SetMarkedLine(int64_t line) { marked_ = line; viewport()->update(); }
    int64_t MarkedLine() const { return marked_; }

signals:
    void currentLineChanged(int64_t line);

protected:
    void paintEvent(QPaintEvent *) override;
    void resizeEvent(QResizeEvent *) override;
    void mousePressEvent(QMouseEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;

private:
    void UpdateScroll();
    int LineHeight() const;
    std::unique_ptr<DataList> list_;
    int64_t current_ = -1, marked_ = -1;
};
} // namespace fm
