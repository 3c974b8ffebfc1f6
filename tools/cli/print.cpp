// The printed pages without a printer or a display, for reports made in batch.
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "commands.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "files/log_file.h"
#include "printing/widgets/print_chart.h"
#include "printing/widgets/print_job.h"
#include "shell/data_list.h"
#include "shell/widgets/source_view.h"

#include <cstdio>
#include <memory>

namespace fm::cli {
int Print(const QString &in, const QString &kind, bool landscape, const QString &out) {
    if (!out.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        std::fprintf(stderr, "fluxmere-cli: %s: the name must end in .pdf\n", qPrintable(out));
        return kUsage;
    }
    if (!LoadFile(in)) return kFailed;
    if (kind == QLatin1String("rf") && !Data().DataIsCsv) {
        std::fprintf(stderr, "fluxmere-cli: %s: no RF field; --kind rf takes a \"File Centralina\" file (.csv)\n",
                     qPrintable(in));
        return kUsage;
    }
    if (!MayReplace(out)) return kFailed;
    // The windows at the size they open with; the page lays the chart out for itself.
    std::unique_ptr<QWidget> window;
    ChartControl *chart = nullptr;
    if (kind == QLatin1String("time")) {
        auto *te = new frmGraphTe;
        chart = te->teeEvolution;
        window.reset(te);
    } else if (kind == QLatin1String("stats")) {
        auto *st = new frmGraphSt;
        chart = st->teeStatistics;
        window.reset(st);
    } else if (kind == QLatin1String("rf")) {
        auto *rf = new frmGraphRf;
        chart = rf->teeEvolution;
        window.reset(rf);
    }
    const bool ok = Trap("Print", false, [&] {
        if (chart) {
            const QString title = ChartPrintTitle();
            PrintToPdf(out, landscape, [&](PrinterPage &page) {
                DrawChartPage(page, title, chart, kind == QLatin1String("time"));
            });
        } else {
            SourceView view;
            view.SetList(std::make_unique<DataList>(true));
            const DataList &list = *view.List();
            PrintToPdf(out, landscape, [&](PrinterPage &page) {
                DrawListPages(page, list, 0, list.LineCount() - 1, list.MedianLine(), view.font());
            });
        }
        return true;
    });
    if (ok) return kOk;
    std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
    return kFailed;
}
}  // namespace fm::cli
