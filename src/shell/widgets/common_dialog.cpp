#include "shell/widgets/common_dialog.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QStringList>

namespace fm {
namespace {
CommonDialog::Responder &TheResponder() {
    static CommonDialog::Responder r;
    return r;
}

// "Log (*.log)|*.log|All (*.*)|*.*" -> the descriptions Qt shows, which carry their patterns.
QStringList QtFilters(const QString &filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString desc = parts[i];
        const QString pattern = QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        if (!desc.contains(QLatin1Char('('))) desc += QStringLiteral(" (%1)").arg(pattern);
        out << desc;
    }
    return out;
}

// The extension of filter `index` (1-based) without its dot: "jpg" for "*.jpg;*.jpeg",
// nothing for "*.*".
QString FilterSuffix(const QString &filter, int index) {
    const QString patterns = filter.split(QLatin1Char('|')).value(2 * index - 1);
    const QString first = patterns.section(QLatin1Char(';'), 0, 0).trimmed();
    if (!first.startsWith(QLatin1String("*."))) return {};
    const QString suffix = first.mid(2);
    return suffix.contains(QLatin1Char('*')) || suffix.contains(QLatin1Char('?')) ? QString() : suffix;
}
} // namespace

void CommonDialog::SetResponder(Responder responder) { TheResponder() = std::move(responder); }

namespace {
CommonDialog::ColorResponder &TheColorResponder() {
    static CommonDialog::ColorResponder r;
    return r;
}
} // namespace

void CommonDialog::SetColorResponder(ColorResponder responder) { TheColorResponder() = std::move(responder); }

bool CommonDialog::ShowColor(QWidget *parent) {
    if (TheColorResponder()) {
        const auto c = TheColorResponder()(Color);
        if (!c) return false;
        Color = *c;
        return true;
    }
    const QColor start(int(Color & 0xFF), int((Color >> 8) & 0xFF), int((Color >> 16) & 0xFF));
    const QColor c = QColorDialog::getColor(start, parent, DialogTitle, QColorDialog::DontUseNativeDialog);
    if (!c.isValid()) return false;
    Color = uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16;
    return true;
}

bool CommonDialog::ShowOpen(QWidget *parent) { return Show(parent, false); }
bool CommonDialog::ShowSave(QWidget *parent) { return Show(parent, true); }

bool CommonDialog::Show(QWidget *parent, bool save) {
    if (TheResponder()) {
        const auto answer = TheResponder()(*this, save);
        if (!answer) return false;
        FileName = answer->fileName;
        FilterIndex = answer->filterIndex;
        return true;
    }
    QFileDialog dlg(parent, DialogTitle, InitDir.trimmed());
    dlg.setOption(QFileDialog::DontUseNativeDialog, true);
    dlg.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dlg.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (save && !(Flags & 2)) dlg.setOption(QFileDialog::DontConfirmOverwrite, true);
    const QStringList filters = QtFilters(Filter);
    dlg.setNameFilters(filters);
    if (!filters.isEmpty()) dlg.selectNameFilter(filters.value(qMax(FilterIndex, 1) - 1));
    if (save) {
        // A name typed without an extension takes the chosen filter's before the dialog
        // looks for an existing file, so "x" with the JPEG filter asks about "x.jpg".
        const QString filter = Filter;
        const auto follow = [&dlg, filters, filter](const QString &chosen) {
            dlg.setDefaultSuffix(FilterSuffix(filter, int(filters.indexOf(chosen)) + 1));
        };
        follow(dlg.selectedNameFilter());
        QObject::connect(&dlg, &QFileDialog::filterSelected, &dlg, follow);
    }
    if (!FileName.isEmpty()) dlg.selectFile(FileName);
    if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty()) return false;
    FileName = dlg.selectedFiles().constFirst();
    FilterIndex = int(filters.indexOf(dlg.selectedNameFilter())) + 1;
    return true;
}

} // namespace fm
