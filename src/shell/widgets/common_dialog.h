#pragma once
// The shared file dialog: the properties the file commands set, over QFileDialog.
// Tests install a responder in place of the dialog.
#include <QString>
#include <functional>
#include <optional>

class QWidget;

namespace fm {

class CommonDialog {
public:
    QString DialogTitle;
    QString Filter;  // "Description|pattern|Description|pattern"
    int FilterIndex = 0;  // in: 0 or 1 is the first filter; out: 1-based filter chosen
    QString InitDir;
    QString FileName;
    int Flags = 0;  // 2 asks before overwriting
    bool CancelError = true;

    // False when the user cancelled.
    bool ShowOpen(QWidget *parent);
    bool ShowSave(QWidget *parent);

    // A responder answers in place of the dialog: the chosen name and filter index,
    // or nothing for a cancel.
    struct Answer {
        QString fileName;
        int filterIndex = 1;
    };
    using Responder = std::function<std::optional<Answer>(const CommonDialog &, bool save)>;
    static void SetResponder(Responder responder);

private:
    bool Show(QWidget *parent, bool save);
};

} // namespace fm
