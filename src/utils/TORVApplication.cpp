#include "utils/TORVApplication.h"

#include "utils/TORVLog.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QTextStream>
#include <QTranslator>

#include <algorithm>
#include <clocale>

namespace
{

const QString OptionHelp = QStringLiteral("help");
const QString OptionVersion = QStringLiteral("version");
const QString OptionLogLevel = QStringLiteral("loglevel");
const QString OptionLogFile = QStringLiteral("logfile");
const QString OptionDaemon = QStringLiteral("daemon");
const QString OptionLanguage = QStringLiteral("language");

const QString TranslationDirectory = QStringLiteral(":/translations");

constexpr int StopProcess = -1;
constexpr int LongestNameBeforeTwoTabs = 5;

} // namespace

const QString TORVApplication::ORGANIZATION_NAME = QStringLiteral("Halmera");
const QString TORVApplication::ORGANIZATION_DOMAIN = QStringLiteral("halmera.example");
const QString TORVApplication::BG_SERVICE_NAME = QStringLiteral("torv3dviewd");
const QString TORVApplication::VERSION = QStringLiteral(TORV_VERSION);

TORVApplication::TORVApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    std::setlocale(LC_NUMERIC, "C");
    setOrganizationName(ORGANIZATION_NAME);
    setOrganizationDomain(ORGANIZATION_DOMAIN);
}

TORVApplication::~TORVApplication() = default;

void TORVApplication::addOption(const QString& name, const QString& helpText)
{
    _options.insert(name, helpText);
}

int TORVApplication::init()
{
    addStandardOptions();
    _arguments = arguments();
    if (!checkOptions()) {
        return StopProcess;
    }
    const bool daemonAsked = optionPresent(OptionDaemon);
    startLogging(daemonAsked ? getLogFileName() : QString());
    if (optionPresent(OptionLanguage)) {
        installTranslators();
    }
    if (optionPresent(OptionHelp)) {
        printHelp();
        return StopProcess;
    }
    if (optionPresent(OptionVersion)) {
        printVersion();
        return StopProcess;
    }
    const int result = daemonAsked ? startDaemon() : 0;
    if (daemonAsked && result == 0) {
        setupNativeSignals();
    }
    return result;
}

void TORVApplication::addStandardOptions()
{
    addOption(OptionHelp, QStringLiteral("display this help and exit"));
    addOption(OptionVersion, QStringLiteral("display program version and exit"));
    addOption(OptionLogLevel, QStringLiteral("loglevel='number', adjust logging level, number can be\n"
                                             "\t\t\t0 error (default)\n"
                                             "\t\t\t1 warning\n"
                                             "\t\t\t2 notice\n"
                                             "\t\t\t3 debug"));
    addOption(OptionLogFile, QStringLiteral("logfile='filename', name of the log file, only for background processes"));
    addOption(OptionLanguage, QStringLiteral("language='lang_[country]', lang is a two letter language code and \n"
                                             "\t\t\t country is an optinal country code"));
}

void TORVApplication::printHelp() const
{
    QTextStream out(stdout);
    out << "Usage: " << getExeName() << " [options]\nOptions:\n";
    for (auto option = _options.cbegin(); option != _options.cend(); ++option) {
        const char* const gap = option.key().size() > LongestNameBeforeTwoTabs ? "\t" : "\t\t";
        out << "\t--" << option.key() << gap << option.value() << '\n';
    }
}

void TORVApplication::printVersion() const
{
    QTextStream(stdout) << "Version: " << _version << Qt::endl;
}

QString TORVApplication::optionName(const QString& argument)
{
    static const QRegularExpression pattern(QStringLiteral("^-{1,2}([a-z|_]*)"));
    const QRegularExpressionMatch match = pattern.match(argument);
    // Not captured(1) alone: that is null both for a lone dash and for no option at all.
    return match.hasMatch() ? QLatin1String("") + match.captured(1) : QString();
}

bool TORVApplication::checkOptions() const
{
    QTextStream out(stdout);
    bool areKnown = true;
    for (const QString& argument : _arguments.mid(1)) {
        const QString name = optionName(argument);
        if (!name.isNull() && !_options.contains(name)) {
            out << "Invalid option: " << name << Qt::endl;
            areKnown = false;
        }
    }
    return areKnown;
}

int TORVApplication::optionIndex(const QString& name) const
{
    for (int i = 1; i < _arguments.size(); ++i) {
        const QString found = optionName(_arguments[i]);
        if (!found.isNull() && found == name) {
            return i;
        }
    }
    return -1;
}

bool TORVApplication::optionPresent(const QString& name) const
{
    return optionIndex(name) >= 1;
}

QString TORVApplication::getOptionValue(const QString& name) const
{
    static const QRegularExpression pattern(QStringLiteral("^-{1,2}([a-z|_]*)=(\\S*)"));
    QString value;
    for (const QString& argument : _arguments.mid(1)) {
        const QRegularExpressionMatch match = pattern.match(argument);
        if (match.hasMatch() && match.captured(1) == name) {
            value = match.captured(2);
        }
    }
    return value;
}

void TORVApplication::optionValue(const QString& name, int& value, int defaultValue, int min, int max) const
{
    const QString text = getOptionValue(name);
    value = std::clamp(text.isEmpty() ? defaultValue : text.toInt(), min, max);
}

void TORVApplication::optionValue(const QString& name, QString& value, const QString& defaultValue) const
{
    const QString text = getOptionValue(name);
    value = text.isEmpty() ? defaultValue : text;
}

QString TORVApplication::getExeName() const
{
    static const QRegularExpression separators(QStringLiteral("[\\|/]"));
    const QString program = _arguments.value(0);
    return program.mid(program.lastIndexOf(separators) + 1);
}

QString TORVApplication::getLogFileName() const
{
    if (optionPresent(OptionLogFile)) {
        return getOptionValue(OptionLogFile);
    }
    const QString directory = QDir::home().exists() ? QDir::homePath() + QDir::separator() : QDir::rootPath();
    return directory + getExeName() + QLatin1String(".log");
}

void TORVApplication::startLogging(const QString& logFileName) const
{
    int level = TORVLog::LEVEL_ERROR;
    optionValue(OptionLogLevel, level, TORVLog::LEVEL_ERROR, TORVLog::LEVEL_ERROR, TORVLog::LEVEL_DEBUG);
    TORVLog::Instance()->setLevel(static_cast<TORVLog::Level>(level));
    TORVLog::Instance()->logInit(getExeName(), logFileName);
}

void TORVApplication::installTranslators()
{
    QString code;
    _appTranslator = std::make_unique<QTranslator>();
    if (loadApplicationTranslation(getOptionValue(OptionLanguage), code)) {
        installTranslator(_appTranslator.get());
    } else {
        TORVLog::Instance()->logError(QLatin1String("Could not locate application translation: ") + code);
    }
    _qtTranslator = std::make_unique<QTranslator>();
    if (_qtTranslator->load(QLatin1String("qt_") + code, QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        installTranslator(_qtTranslator.get());
    } else {
        TORVLog::Instance()->logError(QLatin1String("Could not locate Qt translation: ") + code);
    }
}

bool TORVApplication::loadApplicationTranslation(const QString& language, QString& code)
{
    const QFileInfo file(language);
    if (!file.isFile()) {
        code = language;
        return _appTranslator->load(QLatin1String("torv3d_") + code, TranslationDirectory);
    }
    if (file.suffix() != QLatin1String("qm")) {
        TORVLog::Instance()->logError(QLatin1String("Invalid translation file: ") + language);
        return false;
    }
    return _appTranslator->load(file.completeBaseName(), file.absolutePath());
}
