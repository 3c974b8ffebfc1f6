#include "command_line.h"

#include "commands.h"

#include <QSet>
#include <cstdio>
#include <vector>

namespace fm::cli {
namespace {
struct Command {
    const char *name;
    const char *arguments;  // as the usage lines show them, after the command
    const char *summary;
    std::vector<QCommandLineOption> options;
};

QCommandLineOption Opt(const char *name, const char *text, const char *value = nullptr) {
    const QString n = QString::fromLatin1(name), t = QString::fromUtf8(text);
    return value ? QCommandLineOption(n, t, QString::fromLatin1(value)) : QCommandLineOption(n, t);
}

const std::vector<QCommandLineOption> &GlobalOptions() {
    static const std::vector<QCommandLineOption> options = {
        Opt("options", "the options file to read (never written)", "FILE"),
        Opt("threshold", "the field threshold in µT for the warnings", "X"),
        Opt("lang", "the language of the texts", "it|en"),
        Opt("yes", "answer yes to questions (e.g. replacing a file)"),
        QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("this text")),
        Opt("version", "the program's version"),
    };
    return options;
}

const std::vector<Command> &Commands() {
    const auto port = Opt("port", "the logger's serial device", "DEV");
    const auto json = Opt("json", "the same figures as one JSON object");
    static const std::vector<Command> commands = {
        {"info",
         "[--json] FILE",
         "what the information panel and the warnings show",
         {Opt("json",
              "the same as one JSON object; a \"File Centralina\" file adds DataIsCsv and its RF and "
              "auxiliary figures")}},
        {"convert", "IN OUT", "load a log or a \"File Centralina\" file (.csv), save it as a log", {}},
        {"list",
         "[--by-value] [--json] FILE",
         "the data list's text, by time or by value",
         {Opt("by-value", "the list by value"),
          Opt("json", "the heading's figures and the rows {date, x, y, z, value} as one JSON object")}},
        {"export",
         "FILE --csv|--tab -o OUT",
         "the measurement as a \";\" table or a tab table",
         {Opt("csv", "a \";\" table"), Opt("tab", "a tab table"), Opt("o", "the table to write", "OUT")}},
        {"chart",
         "FILE --kind time|stats|rf -o OUT",
         "a chart as an image: .jpg (800x600), .wmf, .png, .svg or .pdf",
         {Opt("kind", "time, stats (statistics) or rf (the RF field of a \"File Centralina\" file)",
              "time|stats|rf"),
          Opt("min", "the statistics chart's lowest class limit", "A"),
          Opt("max", "the statistics chart's highest class limit", "B"),
          Opt("classes", "the statistics chart's classes, 3 to 11", "N"),
          Opt("o", "the image to write", "OUT")}},
        {"print",
         "FILE --kind time|stats|rf|list [--landscape] -o OUT.pdf",
         "the page the print button gives (a chart, or the data list by time), as an A4 PDF",
         {Opt("kind", "time, stats, rf or list", "time|stats|rf|list"),
          Opt("landscape", "landscape pages (portrait without it)"), Opt("o", "the PDF to write", "OUT")}},
        {"report",
         "FILE -o OUT.pdf [--site TEXT] [--notes TEXT] [--reference REF]...",
         "the exposure report (figures, 24-hour medians, verdicts against reference values, charts) as an "
         "A4 PDF; the threshold is --threshold or the options'",
         {Opt("o", "the PDF to write", "OUT"), Opt("site", "the site, printed at the top", "TEXT"),
          Opt("notes", "notes printed under the site", "TEXT"),
          Opt("reference",
              "a value to judge against, repeatable, in the order printed: it-quality (3 µT), it-attention "
              "(10 µT), it-limit (100 µT), eu-1999 (100 µT), icnirp-public (200 µT), icnirp-workers (1000 µT); "
              "or one of your own as NAME=VALUE in µT, judged on the highest 24-hour median, or "
              "NAME=VALUE:maximum, judged on the maximum (e.g. \"Scuola=2.5\", \"Cabina=50:maximum\"). "
              "Without any: all six built-in ones",
              "REF")}},
        {"recover",
         "FILE",
         "count the complete lines of a real-time log left open by a crash or a power cut, and close it so "
         "that it loads",
         {}},
        {"status", "--port DEV [--json]", "the logger's session state", {port, json}},
        {"read-id", "--port DEV [--json]", "the logger's identification codes", {port, json}},
        {"write-id", "--port DEV SHORT LONG", "write the codes (16 and 48 characters at most)", {port}},
        {"program",
         "--port DEV --step N --unit s|n|h|d",
         "program and start a session",
         {port, Opt("step", "the step between samples", "N"), Opt("unit", "the step's unit", "s|n|h|d"),
          Opt("start", "the session's start (now without it)", "DATE"),
          Opt("stop", "the session's end (the memory's end without it)", "DATE"),
          Opt("clock", "set the logger's clock to DATE instead of now", "DATE")}},
        {"stop", "--port DEV", "stop the running session", {port}},
        {"upload",
         "--port DEV -o FILE",
         "copy the logger's memory into a log file",
         {port, Opt("o", "the log to write", "FILE")}},
        {"import-surveyor",
         "--port DEV -o FILE",
         "copy a Surveyor unit's stored data into a log file",
         {port, Opt("o", "the log to write", "FILE")}},
        {"live",
         "--port DEV --count N [-o FILE]",
         "live mode for N samples (one every 3 s), printed; the real-time log goes to FILE or RealTime.log; "
         "Ctrl+C stops it with the log closed",
         {port, Opt("count", "the samples to take", "N"), Opt("o", "the real-time log", "FILE")}},
    };
    return commands;
}

const Command *Find(const QString &name) {
    for (const Command &c : Commands())
        if (name == QLatin1String(c.name)) return &c;
    return nullptr;
}

// Words wrapped to 79 columns, each line after the first indented.
QString Wrap(const QString &text, int indent, int column) {
    QString out;
    for (const QString &word : text.split(QLatin1Char(' '))) {
        if (column > indent && column + 1 + word.size() > 79) {
            out += QLatin1Char('\n') + QString(indent, QLatin1Char(' '));
            column = indent;
        } else if (column > indent) {
            out += QLatin1Char(' ');
            ++column;
        }
        out += word;
        column += int(word.size());
    }
    return out + QLatin1Char('\n');
}

// "  --name VALUE" and the description at column 26.
QString Entry(const QString &head, const QString &text) {
    constexpr int kColumn = 26;
    QString line = QStringLiteral("  ") + head;
    if (line.size() + 2 > kColumn)
        line += QLatin1Char('\n') + QString(kColumn, QLatin1Char(' '));
    else
        line = line.leftJustified(kColumn);
    return line + Wrap(text, kColumn, kColumn);
}

QString OptionHelp(const std::vector<QCommandLineOption> &options) {
    QString out;
    for (const QCommandLineOption &o : options) {
        QStringList names;
        for (const QString &n : o.names())
            names << (n.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + n;
        QString head = names.join(QStringLiteral(", "));
        if (!o.valueName().isEmpty()) head += QLatin1Char(' ') + o.valueName();
        out += Entry(head, o.description());
    }
    return out;
}

QString Synopsis(const Command &c) {
    return QLatin1String(c.name) + QLatin1Char(' ') + QLatin1String(c.arguments);
}
}  // namespace

CommandLine ReadCommandLine(const QStringList &args) {
    CommandLine cl;
    // The command is the first argument that is neither an option nor an option's value.
    QSet<QString> valued;
    const auto noteValued = [&](const std::vector<QCommandLineOption> &options) {
        for (const QCommandLineOption &o : options)
            if (!o.valueName().isEmpty())
                for (const QString &n : o.names()) valued.insert(n);
    };
    noteValued(GlobalOptions());
    for (const Command &c : Commands()) noteValued(c.options);
    QStringList rest = args;
    for (int i = 0; i < rest.size(); ++i) {
        const QString &a = rest[i];
        if (a == QLatin1String("--")) break;
        if (a.size() > 1 && a.startsWith(QLatin1Char('-'))) {
            const QString name = a.mid(a.startsWith(QLatin1String("--")) ? 2 : 1);
            if (valued.contains(name)) ++i;
            continue;
        }
        cl.command = rest.takeAt(i);
        break;
    }
    const Command *command = Find(cl.command);
    cl.parser = std::make_unique<QCommandLineParser>();
    for (const QCommandLineOption &o : GlobalOptions()) cl.parser->addOption(o);
    if (command)
        for (const QCommandLineOption &o : command->options) cl.parser->addOption(o);
    rest.prepend(QStringLiteral("fluxmere-cli"));
    const bool parsed = cl.parser->parse(rest);
    cl.positional = cl.parser->positionalArguments();
    cl.help = cl.parser->isSet(QStringLiteral("help"));
    cl.version = cl.parser->isSet(QStringLiteral("version"));
    const QString prefix =
        QStringLiteral("fluxmere-cli") + (command ? QLatin1Char(' ') + cl.command : QString());
    if (!cl.command.isEmpty() && !command) {
        cl.error = QStringLiteral("fluxmere-cli: unknown command '%1'").arg(cl.command);
        cl.command.clear();  // the hint names the program's help
    } else if (!parsed) {
        const QStringList unknown = cl.parser->unknownOptionNames();
        const QString problem =
            unknown.isEmpty()
                ? cl.parser->errorText()
                : QStringLiteral("unknown option '%1%2'")
                      .arg(unknown[0].size() == 1 ? QLatin1String("-") : QLatin1String("--"), unknown[0]);
        cl.error = prefix + QStringLiteral(": ") + problem;
    }
    return cl;
}

QString HelpText(const QString &name) {
    const Command *c = Find(name);
    if (c) {
        QString text = QStringLiteral("Usage: fluxmere-cli [options] ") + Synopsis(*c) + QLatin1Char('\n');
        QString summary = QString::fromUtf8(c->summary);
        summary[0] = summary[0].toUpper();
        text += Wrap(summary + QLatin1Char('.'), 0, 0);
        if (!c->options.empty()) text += QStringLiteral("\nOptions:\n") + OptionHelp(c->options);
        return text + QStringLiteral("\nGlobal options:\n") + OptionHelp(GlobalOptions());
    }
    QString text = QStringLiteral(
        "Usage: fluxmere-cli [options] COMMAND [arguments]\n"
        "The measurement studies of Fluxmere without a window, and the commands of the QL540 logger.\n"
        "\nCommands:\n");
    for (const Command &command : Commands())
        text += Entry(Synopsis(command), QString::fromUtf8(command.summary));
    text += QStringLiteral(
        "\nFILE is a log (.log) or a \"File Centralina\" file (.csv); DEV is the logger's serial device.\n"
        "\"fluxmere-cli COMMAND --help\" shows a command's options.\n"
        "\nOptions:\n");
    return text + OptionHelp(GlobalOptions());
}

QString VersionText() {
    return QStringLiteral("fluxmere-cli %1.%2.%3\n")
        .arg(FLUXMERE_VERSION_MAJOR)
        .arg(FLUXMERE_VERSION_MINOR)
        .arg(FLUXMERE_VERSION_REVISION);
}

int UsageError(const QString &command, const QString &problem) {
    const QString where =
        QStringLiteral("fluxmere-cli") + (command.isEmpty() ? QString() : QLatin1Char(' ') + command);
    const QString text =
        (problem.startsWith(QLatin1String("fluxmere-cli")) ? problem
                                                           : where + QStringLiteral(": ") + problem) +
        QStringLiteral("\nTry '%1 --help'.\n").arg(where);
    std::fputs(qPrintable(text), stderr);
    return kUsage;
}

}  // namespace fm::cli
