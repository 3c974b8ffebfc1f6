#pragma once
// The shared file dialog: the properties the file commands set, over QFileDialog.
// Tests install a responder in place of the dialog.
#include <QString>
#include <cstdint>
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

    uint32_t Color = 0;  // 0x00BBGGRR, in and out of ShowColor

    // False when the user cancelled.
    bool ShowOpen(QWidget *parent);
    bool ShowSave(QWidget *parent);
    bool ShowColor(QWidget *parent);

    // A responder answers in place of the dialog: the chosen name and filter index,
    // or nothing for a cancel.
    struct Answer {
        QString fileName;
        int filterIndex = 1;
    };
    using Responder = std::function<std::optional<Answer>(const CommonDialog &, bool save)>;
    static void SetResponder(Responder responder);
    // The colour dialog's stand-in: the colour chosen, or nothing for a cancel.
    using ColorResponder = std::function<std::optional<uint32_t>(uint32_t current)>;
    static void SetColorResponder(ColorResponder responder);

private:
    bool Show(QWidget *parent, bool save);
};

} // namespace fm
