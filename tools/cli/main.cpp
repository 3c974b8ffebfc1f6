// fluxmere-cli: the measurement studies of Fluxmere without a window, for technicians
// who process many files and for scripts.
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
const char kUsageText[] =
    "Usage: fluxmere-cli [options] COMMAND [arguments]\n"
    "\n"
    "Commands:\n"
    "  info FILE            what the information panel and the warnings show\n"
    "  info --json FILE     the same as one JSON object; a \"File Centralina\" file adds\n"
    "                       DataIsCsv and its RF and auxiliary figures\n"
    "  convert IN OUT       load a log or a \"File Centralina\" file (.csv), save it as a log\n"
    "  list FILE [--by-value]  the data list's text, by time or by value\n"
    "  export FILE --csv|--tab -o OUT\n"
    "                       the measurement as a \";\" table or a tab table\n"
    "  chart FILE --kind time|stats|rf [--min A --max B --classes N] -o OUT\n"
    "                       a chart as an image: .jpg (800x600), .wmf, .png, .svg or .pdf;\n"
    "                       rf, the RF field, needs a \"File Centralina\" file\n"
    "\n"
    "FILE is a log (.log) or a \"File Centralina\" file (.csv).\n"
    "  status --port DEV                       the logger's session state\n"
    "  read-id --port DEV                      the logger's identification codes\n"
    "  write-id --port DEV SHORT LONG          write the codes (16 and 48 characters at most)\n"
    "  program --port DEV --step N --unit s|n|h|d [--start DATE] [--stop DATE]\n"
    "                 [--clock DATE]           program and start a session; --clock sets the logger's\n"
    "                                          clock to DATE instead of now\n"
    "  stop --port DEV                         stop the running session\n"
    "  upload --port DEV -o FILE               copy the logger's memory into a log file\n"
    "  import-surveyor --port DEV -o FILE      copy a Surveyor unit's stored data into a log file\n"
    "  live --port DEV --count N [-o FILE]     live mode for N samples (one every 3 s), printed;\n"
    "                                          the real-time log goes to FILE or RealTime.log;\n"
    "                                          Ctrl+C stops it with the log closed\n"
    "  recover FILE         count the complete lines of a real-time log left open by a crash\n"
    "                       or a power cut, and close it so that it loads\n"
    "\n"
    "Options:\n"
    "  --options FILE       the options file to read (never written)\n"
    "  --threshold X        the field threshold in µT for the warnings\n"
    "  --lang it|en         the language of the texts\n"
    "  --yes                answer yes to questions (e.g. replacing a file)\n"
    "  --help               this text\n";

int Usage(const char *problem) {
    if (problem) std::fprintf(stderr, "fluxmere-cli: %s\n", problem);
    std::fputs(kUsageText, stderr);
    return cli::kUsage;
}
}  // namespace

int main(int argc, char **argv) {
    // A file-size limit makes a write fail with EFBIG, reported like a full disk, instead
    // of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // Charts are drawn by widgets, off any screen: no display is needed.
    const bool charts =
        std::any_of(argv + 1, argv + argc, [](const char *a) { return std::strcmp(a, "chart") == 0; });
    if (charts && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> app =
        charts ? std::make_unique<QApplication>(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    // Names from the raw bytes: a name that is not UTF-8 keeps them (see NameFromNative).
    QStringList args;
    for (int i = 1; i < argc; ++i) args << NameFromNative(argv[i]);
    QString optionsFile, lang, threshold, port, out, step, unit, start, stop, clock, kind, minimum, maximum,
        classes, count;
    bool yes = false;
    QStringList rest;
    for (int i = 0; i < args.size(); ++i) {
        const QString &a = args[i];
        const auto value = [&](QString &into) {
            if (i + 1 >= args.size()) return false;
            into = args[++i];
            return true;
        };
        if (a == QLatin1String("--help") || a == QLatin1String("-h")) {
            std::fputs(kUsageText, stdout);
            return cli::kOk;
        } else if (a == QLatin1String("--yes")) {
            yes = true;
        } else if (a == QLatin1String("--options")) {
            if (!value(optionsFile)) return Usage("--options needs a file");
        } else if (a == QLatin1String("--lang")) {
            if (!value(lang) || (lang != QLatin1String("it") && lang != QLatin1String("en")))
                return Usage("--lang takes it or en");
        } else if (a == QLatin1String("--port")) {
            if (!value(port)) return Usage("--port needs a device");
        } else if (a == QLatin1String("-o")) {
            if (!value(out)) return Usage("-o needs a file");
        } else if (a == QLatin1String("--step")) {
            if (!value(step)) return Usage("--step needs a number");
        } else if (a == QLatin1String("--unit")) {
            if (!value(unit)) return Usage("--unit takes s, n, h or d");
        } else if (a == QLatin1String("--start")) {
            if (!value(start)) return Usage("--start needs a date");
        } else if (a == QLatin1String("--stop")) {
            if (!value(stop)) return Usage("--stop needs a date");
        } else if (a == QLatin1String("--clock")) {
            if (!value(clock)) return Usage("--clock needs a date");
        } else if (a == QLatin1String("--count")) {
            if (!value(count)) return Usage("--count needs a number");
        } else if (a == QLatin1String("--kind")) {
            if (!value(kind)) return Usage("--kind takes time, stats or rf");
        } else if (a == QLatin1String("--min")) {
            if (!value(minimum)) return Usage("--min needs a number");
        } else if (a == QLatin1String("--max")) {
            if (!value(maximum)) return Usage("--max needs a number");
        } else if (a == QLatin1String("--classes")) {
            if (!value(classes)) return Usage("--classes takes 3 to 11");
        } else if (a == QLatin1String("--threshold")) {
            if (!value(threshold)) return Usage("--threshold needs a number");
        } else {
            rest << a;
        }
    }
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
        if (!ParseNumber(threshold, &t)) return Usage("--threshold needs a number");
        Options().Soglia = float(t);
    }
    if (rest.isEmpty()) return Usage("no command given");
    const QString cmd = rest.takeFirst();
    if (cmd == QLatin1String("info")) {
        const bool json = rest.removeAll(QStringLiteral("--json")) > 0;
        if (rest.size() != 1) return Usage("info takes one file");
        return cli::Info(rest[0], json);
    }
    if (cmd == QLatin1String("list")) {
        const bool byValue = rest.removeAll(QStringLiteral("--by-value")) > 0;
        if (rest.size() != 1) return Usage("list takes one file");
        return cli::List(rest[0], byValue);
    }
    if (cmd == QLatin1String("export")) {
        const bool csv = rest.removeAll(QStringLiteral("--csv")) > 0;
        const bool tab = rest.removeAll(QStringLiteral("--tab")) > 0;
        if (rest.size() != 1 || out.isEmpty() || csv == tab)
            return Usage("export takes FILE, --csv or --tab, and -o OUT");
        return cli::Export(rest[0], csv, out);
    }
    if (cmd == QLatin1String("chart")) {
        if (rest.size() != 1 || out.isEmpty()) return Usage("chart takes FILE, --kind and -o OUT");
        if (kind != QLatin1String("time") && kind != QLatin1String("stats") && kind != QLatin1String("rf"))
            return Usage("--kind takes time, stats or rf");
        cli::ChartLimits limits;
        if (!classes.isEmpty()) {
            bool ok = false;
            limits.classes = classes.toInt(&ok);
            if (!ok || limits.classes < 3 || limits.classes > 11) return Usage("--classes takes 3 to 11");
        }
        for (auto [text, into] : {std::pair{&minimum, &limits.min}, std::pair{&maximum, &limits.max}}) {
            double v = 0;
            if (text->isEmpty()) continue;
            if (!ParseNumber(*text, &v)) return Usage("--min and --max take numbers");
            *into = v;
        }
        if (kind != QLatin1String("stats") && (limits.min || limits.max || limits.classes))
            return Usage("--min, --max and --classes belong to the statistics chart");
        return cli::Chart(rest[0], kind, limits, out);
    }
    if (cmd == QLatin1String("recover")) {
        if (rest.size() != 1) return Usage("recover takes one file");
        return cli::Recover(rest[0]);
    }
    if (cmd == QLatin1String("convert")) {
        if (rest.size() != 2) return Usage("convert takes an input and an output file");
        return cli::Convert(rest[0], rest[1]);
    }
    static const QStringList linkCommands = {"status", "read-id", "write-id", "program",
                                             "stop",   "upload",  "live",     "import-surveyor"};
    if (linkCommands.contains(cmd)) {
        if (port.isEmpty()) return Usage("the logger's commands need --port DEV");
        if (cmd == QLatin1String("status") && rest.isEmpty()) return cli::Status(port);
        if (cmd == QLatin1String("read-id") && rest.isEmpty()) return cli::ReadCodes(port);
        if (cmd == QLatin1String("write-id") && rest.size() == 2)
            return cli::WriteCodes(port, rest[0], rest[1]);
        if (cmd == QLatin1String("program") && rest.isEmpty())
            return cli::Program(port, step, unit, start, stop, clock);
        if (cmd == QLatin1String("stop") && rest.isEmpty()) return cli::Stop(port);
        if (cmd == QLatin1String("upload") && rest.isEmpty() && !out.isEmpty()) return cli::Upload(port, out);
        if (cmd == QLatin1String("import-surveyor") && rest.isEmpty() && !out.isEmpty())
            return cli::ImportSurveyor(port, out);
        if (cmd == QLatin1String("live") && rest.isEmpty()) {
            bool ok = false;
            const int n = count.toInt(&ok);
            if (!ok || n < 1) return Usage("live needs --count N, N at least 1");
            return cli::LiveRun(port, n, out);
        }
        return Usage(qPrintable(QStringLiteral("wrong arguments for '%1'").arg(cmd)));
    }
    return Usage(qPrintable(QStringLiteral("unknown command '%1'").arg(cmd)));
}
