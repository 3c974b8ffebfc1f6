// Chart images without a window, for reports made in batch.
#include "analysis/statistics.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_image.h"
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "commands.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"

#include <QComboBox>
#include <QLineEdit>
#include <cstdio>

namespace fm::cli {
namespace {
bool KnownImage(const QString &file) {
    for (const char *ext : {".jpg", ".jpeg", ".wmf", ".png", ".svg", ".pdf"})
        if (file.endsWith(QLatin1String(ext), Qt::CaseInsensitive)) return true;
    return false;
}

// Asked once the chart is known to be drawable, as a log's save asks.
int Save(ChartControl *chart, const QString &out) {
    if (!MayReplace(out)) return kFailed;
    if (ExportChartImage(chart, out)) return kOk;
    std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
    return kFailed;
}
}  // namespace

int Chart(const QString &in, const QString &kind, const ChartLimits &limits, const QString &out) {
    if (!KnownImage(out)) {
        std::fprintf(stderr, "fluxmere-cli: %s: the name must end in .jpg, .wmf, .png, .svg or .pdf\n",
                     qPrintable(out));
        return kUsage;
    }
    if (!LoadFile(in)) return kFailed;
    if (kind == QLatin1String("rf")) {
        if (!Data().DataIsCsv) {
            std::fprintf(stderr,
                         "fluxmere-cli: %s: no RF field; --kind rf takes a \"File Centralina\" file (.csv)\n",
                         qPrintable(in));
            return kUsage;
        }
        frmGraphRf chart;
        chart.resize(900, 500);
        return Save(chart.teeEvolution, out);
    }
    if (kind == QLatin1String("time")) {
        frmGraphTe chart;
        chart.resize(900, 500);
        return Save(chart.teeEvolution, out);
    }
    frmGraphSt chart;
    chart.resize(700, 450);
    if (limits.min || limits.max || limits.classes) {
        // The boxes' own bounds, as when a user leaves them.
        const auto bounded = [](double v) { return QString::number(std::clamp(v, 0.0, 50.0), 'g', 6); };
        if (limits.min) chart.txtMinValue->setText(bounded(*limits.min));
        if (limits.max) chart.txtMaxValue->setText(bounded(*limits.max));
        if (limits.classes) chart.cboNumClassi->setCurrentIndex(limits.classes - 3);
        if (!(Val(chart.txtMaxValue->text()) > Val(chart.txtMinValue->text()))) {
            std::fprintf(stderr, "%s\n", qPrintable(ResString(30)));
            return kFailed;
        }
        chart.Refresh();
    }
    return Save(chart.teeStatistics, out);
}
}  // namespace fm::cli
