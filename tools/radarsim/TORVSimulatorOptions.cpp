#include "radarsim/TORVSimulatorOptions.h"

#include "radarsim/TORVProductKind.h"
#include "radarsim/TORVSiteInfo.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace
{

using Options = TORVSimulatorOptions;
using Apply = bool (*)(Options&, const QString&);

struct Option
{
    const char* name;
    const char* argument; ///< empty where it takes none
    const char* help;     ///< one line each
    Apply apply;          ///< whether the argument makes sense
};

bool toInt(const QString& text, int low, int high, int& value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    value = ok ? number : value;
    return ok && number >= low && number <= high;
}

bool toDouble(const QString& text, double low, double high, double& value)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    value = ok ? number : value;
    return ok && number >= low && number <= high;
}

bool setOut(Options& options, const QString& text)
{
    options.out = text;
    return !text.isEmpty();
}

bool setSites(Options& options, const QString& text)
{
    return toInt(text, 1, static_cast<int>(TORVSiteInfo::all().size()), options.sites);
}

bool setHours(Options& options, const QString& text)
{
    return toDouble(text, 0.0, 24.0 * 31.0, options.hours);
}

bool setStep(Options& options, const QString& text)
{
    return toInt(text, 1, 24 * 60, options.step);
}

bool setSize(Options& options, const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,4})x(\\d{1,4})x(\\d{1,3})$"));
    const QRegularExpressionMatch match = form.match(text);
    return match.hasMatch() && toInt(match.captured(1), 2, 1000, options.size.x) &&
           toInt(match.captured(2), 2, 1000, options.size.y) && toInt(match.captured(3), 2, 40, options.size.z);
}

bool setSeed(Options& options, const QString& text)
{
    bool ok = false;
    options.seed = text.toUInt(&ok);
    return ok;
}

bool setEnd(Options& options, const QString& text)
{
    options.end = QDateTime::fromString(text, QStringLiteral("yyyy-MM-ddThh:mm"));
    options.end.setTimeSpec(Qt::UTC);
    // The file names have two digits for the year.
    return options.end.isValid() && options.end.date().year() >= 1990 && options.end.date().year() < 2090;
}

bool setLive(Options& options, const QString& text)
{
    return toDouble(text, 0.0, 86400.0, options.live);
}

bool setKeep(Options& options, const QString& text)
{
    return toDouble(text, 0.0, 24.0 * 366.0, options.keep);
}

bool setSlow(Options& options, const QString&)
{
    return options.slow = true;
}

bool setFaults(Options& options, const QString&)
{
    return options.faults = true;
}

bool setBytes(Options& options, const QString& text)
{
    options.wide = text == QLatin1String("2");
    return options.wide || text == QLatin1String("1");
}

bool setThreads(Options& options, const QString& text)
{
    return toInt(text, 1, 256, options.threads);
}

bool setNoTerrain(Options& options, const QString&)
{
    options.terrain = false;
    return true;
}

bool setProducts(Options& options, const QString& text)
{
    options.products.clear();
    for (const QString& name : text.split(QLatin1Char(','))) {
        const TORVProductKind* kind = TORVProductKind::find(name);
        const bool isAll = name.compare(QLatin1String("all"), Qt::CaseInsensitive) == 0;
        if (kind == nullptr && !isAll) {
            return false;
        }
        for (const TORVProductKind& any : TORVProductKind::all()) {
            const bool isNew =
                std::find(options.products.begin(), options.products.end(), &any) == options.products.end();
            if (isNew && (isAll || &any == kind)) {
                options.products.push_back(&any);
            }
        }
    }
    return true;
}

bool setPicture(Options& options, const QString& text)
{
    options.pictureTo = text;
    options.action = Options::DRAW_PICTURE;
    return !text.isEmpty();
}

bool setHelp(Options& options, const QString&)
{
    options.action = Options::SHOW_HELP;
    return true;
}

const Option Table[] = {
    {"out", "DIR", "where to write the installation (required)", setOut},
    {"sites", "N", "number of radars, 1 to 4 (2)", setSites},
    {"hours", "H", "length of the archive in hours (6)", setHours},
    {"step", "MIN", "minutes between two scans (5)", setStep},
    {"end", "TIME", "time of the last scan, yyyy-MM-ddThh:mm in UTC\n(2026-07-14T18:00; the present with --live)",
     setEnd},
    {"size", "XxYxZ", "grid points of a volume, up to 1000x1000x40 (240x240x20)", setSize},
    {"products", "LIST",
     "which products, separated by commas: Z, V, W, R (volumes),\nMAX, VIL, SRI, PPI, CAPPI (flat), or all "
     "(Z,V,W,MAX,SRI)",
     setProducts},
    {"bytes", "N", "bytes of an item in Z, V and W, 1 or 2 (1)", setBytes},
    {"seed", "N", "another seed gives other weather and another country (1)", setSeed},
    {"live", "SECONDS", "go on after the archive, one step every SECONDS, until stopped", setLive},
    {"keep", "HOURS", "remove products that are older than this (keep all)", setKeep},
    {"slow", "", "let each product file grow in pieces, as over a slow network", setSlow},
    {"faults", "",
     "with each scan add a bad file: truncated, garbage, foreign,\nduplicate, unreadable or of a wrong type, in turn",
     setFaults},
    {"no-terrain", "", "write no terrain tiles", setNoTerrain},
    {"threads", "N", "how many threads work at once (as many as there are cores)", setThreads},
    {"picture", "PNG",
     "draw cuts through the product file that is named, write no\ninstallation: --picture cuts.png FILE", setPicture},
    {"help", "", "show this text", setHelp},
};

Options rejected(const QString& why)
{
    Options options;
    options.action = Options::REJECT;
    options.error = why;
    return options;
}

const Option* findOption(const QString& name)
{
    const auto found = std::find_if(std::begin(Table), std::end(Table),
                                    [&name](const Option& option) { return name == QLatin1String(option.name); });
    return found == std::end(Table) ? nullptr : found;
}

void useDefaultProducts(Options& options)
{
    for (const TORVProductKind& kind : TORVProductKind::all()) {
        if (kind.isDefault) {
            options.products.push_back(&kind);
        }
    }
}

Options checked(Options options)
{
    if (options.action == Options::GENERATE && options.out.isEmpty()) {
        return rejected(QStringLiteral("--out is missing"));
    }
    if (options.action == Options::GENERATE && !options.pictureFrom.isEmpty()) {
        return rejected(QStringLiteral("unexpected argument '%1'").arg(options.pictureFrom));
    }
    if (options.action == Options::DRAW_PICTURE && options.pictureFrom.isEmpty()) {
        return rejected(QStringLiteral("--picture needs a product file"));
    }
    if (options.products.empty()) {
        useDefaultProducts(options);
    }
    return options;
}

} // namespace

TORVSimulatorOptions TORVSimulatorOptions::parse(const QStringList& arguments)
{
    TORVSimulatorOptions options;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (!argument.startsWith(QLatin1String("--"))) {
            if (!options.pictureFrom.isEmpty()) {
                return rejected(QStringLiteral("unexpected argument '%1'").arg(argument));
            }
            options.pictureFrom = argument;
            continue;
        }
        const QString name = argument.section(QLatin1Char('='), 0, 0).mid(2);
        const Option* option = findOption(name);
        if (option == nullptr) {
            return rejected(QStringLiteral("unknown option '%1'").arg(argument));
        }
        const bool takesValue = option->argument[0] != '\0';
        const bool isJoined = argument.contains(QLatin1Char('='));
        if (takesValue ? !isJoined && i + 1 == arguments.size() : isJoined) {
            const auto form =
                takesValue ? QStringLiteral("--%1 needs a value: %2") : QStringLiteral("--%1 takes no value");
            return rejected(takesValue ? form.arg(name, QLatin1String(option->argument)) : form.arg(name));
        }
        const QString value = !takesValue ? QString()
                              : isJoined  ? argument.section(QLatin1Char('='), 1)
                                          : arguments[++i];
        if (!option->apply(options, value)) {
            return rejected(QStringLiteral("--%1: '%2' is not possible").arg(name, value));
        }
    }
    return options.action == SHOW_HELP ? options : checked(options);
}

QString TORVSimulatorOptions::helpText()
{
    QString text = QStringLiteral("Usage: torv3dsim --out DIR [options]\n"
                                  "\n"
                                  "Writes a whole demo installation: volumes of believable storms seen by simulated\n"
                                  "radars, terrain, landmarks, colours and settings. Show it with\n"
                                  "HOME=DIR/home torv3dview.\n"
                                  "\n"
                                  "Options (defaults in brackets):\n");
    constexpr int HelpColumn = 22;
    for (const Option& option : Table) {
        const QString left =
            QStringLiteral("  --%1 %2").arg(QLatin1String(option.name), QLatin1String(option.argument));
        const QStringList lines = QString::fromLatin1(option.help).split(QLatin1Char('\n'));
        text += left.leftJustified(HelpColumn) + lines.first() + QLatin1Char('\n');
        for (int i = 1; i < lines.size(); ++i) {
            text += QString(HelpColumn, QLatin1Char(' ')) + lines[i] + QLatin1Char('\n');
        }
    }
    return text + QStringLiteral("\n"
                                 "The same options and seed give the same bytes. Rain is R = (Z / 200)^(1 / 1.6).\n"
                                 "Exit status: 0 done, 1 something could not be written or read, 2 wrong options.\n");
}
