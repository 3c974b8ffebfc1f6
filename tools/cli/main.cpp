// fluxmere-cli: the measurement studies of Fluxmere without a window, for technicians
// who process many files and for scripts.
#include "command_line.h"
#include "commands.h"
#include "console_host.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/file_access.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace fm;

namespace {
int Run(const cli::CommandLine &cl) {
    const QString &cmd = cl.command;
    const QStringList &rest = cl.positional;
    const auto usage = [&](const char *problem) { return cli::UsageError(cmd, QString::fromUtf8(problem)); };
    const auto is = [&](const char *name) { return cmd == QLatin1String(name); };
    if (is("info")) {
        if (rest.size() != 1) return usage("info takes one file");
        return cli::Info(rest[0], cl.IsSet("json"));
    }
    if (is("list")) {
        if (rest.size() != 1) return usage("list takes one file");
        return cli::List(rest[0], cl.IsSet("by-value"), cl.IsSet("json"));
    }
    if (is("export")) {
        const bool csv = cl.IsSet("csv");
        if (rest.size() != 1 || cl.Value("o").isEmpty() || csv == cl.IsSet("tab"))
            return usage("export takes FILE, --csv or --tab, and -o OUT");
        return cli::Export(rest[0], csv, cl.Value("o"));
    }
    if (is("chart")) {
        const QString kind = cl.Value("kind");
        if (rest.size() != 1 || cl.Value("o").isEmpty()) return usage("chart takes FILE, --kind and -o OUT");
        if (kind != QLatin1String("time") && kind != QLatin1String("stats") && kind != QLatin1String("rf"))
            return usage("--kind takes time, stats or rf");
        cli::ChartLimits limits;
        if (cl.IsSet("classes")) {
            bool ok = false;
            limits.classes = cl.Value("classes").toInt(&ok);
            if (!ok || limits.classes < 3 || limits.classes > 11) return usage("--classes takes 3 to 11");
        }
        for (auto [name, into] : {std::pair{"min", &limits.min}, std::pair{"max", &limits.max}}) {
            double v = 0;
            if (!cl.IsSet(name)) continue;
            if (!ParseNumber(cl.Value(name), &v)) return usage("--min and --max take numbers");
            *into = v;
        }
        if (kind != QLatin1String("stats") && (limits.min || limits.max || limits.classes))
            return usage("--min, --max and --classes belong to the statistics chart");
        return cli::Chart(rest[0], kind, limits, cl.Value("o"));
    }
    if (is("print")) {
        const QString kind = cl.Value("kind");
        if (rest.size() != 1 || cl.Value("o").isEmpty()) return usage("print takes FILE, --kind and -o OUT.pdf");
        if (!QStringList{QStringLiteral("time"), QStringLiteral("stats"), QStringLiteral("rf"), QStringLiteral("list")}
                 .contains(kind))
            return usage("--kind takes time, stats, rf or list");
        return cli::Print(rest[0], kind, cl.IsSet("landscape"), cl.Value("o"));
    }
    if (is("report")) {
        if (rest.size() != 1 || cl.Value("o").isEmpty()) return usage("report takes FILE and -o OUT.pdf");
        return cli::Report(rest[0], cl.Value("o"), cl.Value("site"), cl.Value("notes"), cl.Values("reference"));
    }
    if (is("recover")) {
        if (rest.size() != 1) return usage("recover takes one file");
        return cli::Recover(rest[0]);
    }
    if (is("convert")) {
        if (rest.size() != 2) return usage("convert takes an input and an output file");
        return cli::Convert(rest[0], rest[1]);
    }
    // The logger's commands.
    const QString port = cl.Value("port");
    if (port.isEmpty()) return usage("the logger's commands need --port DEV");
    const bool none = rest.isEmpty();
    if (is("status") && none) return cli::Status(port, cl.IsSet("json"));
    if (is("read-id") && none) return cli::ReadCodes(port, cl.IsSet("json"));
    if (is("write-id") && rest.size() == 2) return cli::WriteCodes(port, rest[0], rest[1]);
    if (is("program") && none)
        return cli::Program(port, cl.Value("step"), cl.Value("unit"), cl.Value("start"), cl.Value("stop"),
                            cl.Value("clock"));
    if (is("stop") && none) return cli::Stop(port);
    if (is("upload") && none && cl.IsSet("o")) return cli::Upload(port, cl.Value("o"));
    if (is("import-surveyor") && none && cl.IsSet("o")) return cli::ImportSurveyor(port, cl.Value("o"));
    if (is("live") && none) {
        bool ok = false;
        const int n = cl.Value("count").toInt(&ok);
        if (!ok || n < 1) return usage("live needs --count N, N at least 1");
        return cli::LiveRun(port, n, cl.Value("o"));
    }
    return usage("wrong arguments");
}
}  // namespace

int main(int argc, char **argv) {
    // A file-size limit makes a write fail with EFBIG, reported like a full disk, instead
    // of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // Charts are drawn by widgets, off any screen: no display is needed.
    const bool charts =
        std::any_of(argv + 1, argv + argc, [](const char *a) {
            return std::strcmp(a, "chart") == 0 || std::strcmp(a, "print") == 0 || std::strcmp(a, "report") == 0;
        });
    if (charts && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> app =
        charts ? std::make_unique<QApplication>(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    // Names from the raw bytes: a name that is not UTF-8 keeps them (see NameFromNative).
    QStringList args;
    for (int i = 1; i < argc; ++i) args << NameFromNative(argv[i]);
    const cli::CommandLine cl = cli::ReadCommandLine(args);
    if (!cl.error.isEmpty()) return cli::UsageError(cl.command, cl.error);
    if (cl.help || cl.version) {
        std::fputs(qPrintable(cl.help ? cli::HelpText(cl.command) : cli::VersionText()), stdout);
        return cli::kOk;
    }
    const QString lang = cl.Value("lang"), optionsFile = cl.Value("options"),
                  threshold = cl.Value("threshold");
    if (!lang.isEmpty() && lang != QLatin1String("it") && lang != QLatin1String("en"))
        return cli::UsageError(cl.command, QStringLiteral("--lang takes it or en"));
    const bool yes = cl.IsSet("yes");
    cli::ConsoleHost host(yes);
    SetHost(&host);
    InitVariabili();
    if (!optionsFile.isEmpty()) SetWritableDir(QFileInfo(optionsFile).absolutePath());
    // The options are read like the GUI reads them, and never written back.
    if (!optionsFile.isEmpty() && QFileInfo(optionsFile).fileName() != QLatin1String("Fluxmere.ini")) {
        QFile f;
        Options() = OptionsRecord::Defaults();
        try {
            OpenForReading(f, optionsFile);
            Options() = OptionsRecord::FromBytes(f.read(kOptionsRecordSize));
        } catch (const Fault &) {
            // As the GUI does with an options file it cannot read: the defaults.
        }
    } else {
        ReadOptions();
    }
    if (!InitLibrary(QStringLiteral("Language.dll"))) {
        std::fprintf(stderr, "CRITICAL ERROR: Error loading the Language library. Cannot proceed.\n");
        return cli::kNoLanguage;
    }
    SetLanguage(lang.isEmpty() ? Options().Language : lang == QLatin1String("en") ? 1 : 0);
    if (!threshold.isEmpty()) {
        double t = 0;
        if (!ParseNumber(threshold, &t))
            return cli::UsageError(cl.command, QStringLiteral("--threshold needs a number"));
        Options().Soglia = float(t);
    }
    if (cl.command.isEmpty()) return cli::UsageError({}, QStringLiteral("no command given"));
    return Run(cl);
}
