#include "charts/widgets/chart_image.h"

#include "charts/widgets/chart_control.h"
#include "core/host.h"
#include "core/language.h"
#include "shell/file_folders.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"


namespace fm {
namespace {
constexpr int kWidth = 800, kHeight = 600;
const char *const kExtensions[] = {".jpg", ".wmf", ".png", ".svg", ".pdf"};
}  // namespace

bool ExportChartImage(ChartControl *chart, const QString &file) {
    if (file.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive) ||
        file.endsWith(QLatin1String(".jpeg"), Qt::CaseInsensitive))
        return chart->ExportJpeg(file, kWidth, kHeight, 100);
    return chart->Export(file, kWidth, kHeight);
}

void SaveChartImage(ChartControl *chart, QWidget *parent, const QString &title,
                    const QString &jpegWmfFilter) {
    frmMain *m = MainForm();
    CommonDialog local;
    CommonDialog &dlg = m ? m->dlgFile : local;
    dlg = CommonDialog{};
    dlg.DialogTitle = title;
    dlg.Filter = jpegWmfFilter + QStringLiteral("|PNG (*.png)|*.png|SVG (*.svg)|*.svg|PDF (*.pdf)|*.pdf");
    dlg.FilterIndex = 1;
    dlg.InitDir = StartFolder(FileKind::Images);
    dlg.Flags = 6;
    if (!dlg.ShowSave(parent)) return;
    // The filter in force decides the format, whatever extension was typed.
    const int index = qBound(1, dlg.FilterIndex, 5);
    QString name = dlg.FileName;
    RememberFolder(FileKind::Images, name);
    const QString want = QLatin1String(kExtensions[index - 1]);
    if (!name.endsWith(want, Qt::CaseInsensitive)) name += want;
    if (!ExportChartImage(chart, name)) Host().MessBox(ResString(8), {}, -1, -1);
}
}  // namespace fm
