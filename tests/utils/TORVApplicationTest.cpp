#include "utils/TORVApplication.h"

#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"
#include "utils/TORVLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace
{

const QString Probe = QStringLiteral(TORV_APP_PROBE);

// An application on a command line of the test's own.
class Started final
{
public:
    explicit Started(const QStringList& arguments)
    {
        for (const QString& argument : arguments) {
            _texts.push_back(argument.toLocal8Bit());
        }
        for (QByteArray& text : _texts) {
            _argv.push_back(text.data());
        }
        _argv.push_back(nullptr);
        _argc = static_cast<int>(_texts.size());
        _application = std::make_unique<TORVApplication>(_argc, _argv.data());
    }

    TORVApplication* operator->() const { return _application.get(); }

private:
    std::vector<QByteArray> _texts;
    std::vector<char*> _argv;
    int _argc = 0;
    std::unique_ptr<TORVApplication> _application;
};

class TORVApplicationTest : public testing::Test
{
protected:
    TORVApplicationTest()
    {
        qputenv("QT_QPA_PLATFORM", "minimal");
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(home.path()));
    }

    // After `init` with the option "user" in the table.
    static Started started(const QStringList& arguments)
    {
        Started application(QStringList{QStringLiteral("/usr/bin/viewer")} + arguments);
        application->addOption(QStringLiteral("user"), QStringLiteral("a name"));
        EXPECT_EQ(application->init(), 0);
        return application;
    }

    static QStringList standardLines(const QString& exe, const QStringList& more)
    {
        return QStringList{exe + QLatin1String(" starting")} + more;
    }

    const SandboxedHome home;
};

using TORVApplicationTranslationTest = TORVApplicationTest;

// A directory for locales that this test compiles itself, where the system has none with a decimal comma.
QString commaLocale(const QTemporaryDir& directory)
{
    const QString path = directory.filePath(QStringLiteral("fi_FI.UTF-8"));
    const QStringList arguments = {QStringLiteral("--no-archive"), QStringLiteral("-i"),    QStringLiteral("fi_FI"),
                                   QStringLiteral("-f"),           QStringLiteral("UTF-8"), path};
    ProcessRun(QStringLiteral("localedef"))(arguments);
    return QFileInfo::exists(path) ? QStringLiteral("fi_FI.UTF-8") : QString();
}

} // namespace

TEST_F(TORVApplicationTest, NamesTheOrganisationThatDecidesWhereSettingsLie)
{
    const Started application({QStringLiteral("viewer")});
    EXPECT_EQ(QCoreApplication::organizationName(), QLatin1String("Halmera"));
    EXPECT_EQ(QCoreApplication::organizationDomain(), QLatin1String("halmera.example"));
}

TEST_F(TORVApplicationTest, HasTheNamesThatOtherPartsOfTheSystemRelyOn)
{
    EXPECT_EQ(TORVApplication::ORGANIZATION_NAME, QLatin1String("Halmera"));
    EXPECT_EQ(TORVApplication::BG_SERVICE_NAME, QLatin1String("torv3dviewd"));
    EXPECT_EQ(TORVApplication::VERSION, QLatin1String("1.0.2"));
}

TEST_F(TORVApplicationTest, IsNoDaemonAtConstruction)
{
    const Started application({QStringLiteral("viewer")});
    EXPECT_FALSE(application->isDaemon());
}

TEST_F(TORVApplicationTest, TellsOptionNamesByOneOrTwoDashes)
{
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("-version")), QLatin1String("version"));
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("--version")), QLatin1String("version"));
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("--user=anna")), QLatin1String("user"));
}

TEST_F(TORVApplicationTest, EndsAnOptionNameAtTheFirstCharacterThatIsNoLetterUnderscoreOrBar)
{
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("--log_level")), QLatin1String("log_level"));
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("--a|b")), QLatin1String("a|b"));
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("--logLevel")), QLatin1String("log"));
    EXPECT_EQ(TORVApplication::optionName(QStringLiteral("--user1")), QLatin1String("user"));
}

TEST_F(TORVApplicationTest, TakesALoneDashForAnOptionWithoutName)
{
    EXPECT_FALSE(TORVApplication::optionName(QStringLiteral("-")).isNull());
    EXPECT_TRUE(TORVApplication::optionName(QStringLiteral("-")).isEmpty());
    EXPECT_TRUE(TORVApplication::optionName(QStringLiteral("---user")).isEmpty());
}

TEST_F(TORVApplicationTest, TakesAWordWithoutDashForNoOption)
{
    EXPECT_TRUE(TORVApplication::optionName(QStringLiteral("somefile")).isNull());
    EXPECT_TRUE(TORVApplication::optionName(QStringLiteral("a--user")).isNull());
    EXPECT_TRUE(TORVApplication::optionName(QString()).isNull());
}

TEST_F(TORVApplicationTest, IgnoresAPlainArgument)
{
    const Started application = started({QStringLiteral("somefile")});
    EXPECT_TRUE(application->checkOptions());
}

TEST_F(TORVApplicationTest, TheIndexIsThatOfTheFirstArgumentOfTheName)
{
    const Started application =
        started({QStringLiteral("word"), QStringLiteral("--user=anna"), QStringLiteral("--user=bert")});
    EXPECT_EQ(application->optionIndex(QStringLiteral("user")), 2);
}

TEST_F(TORVApplicationTest, TheIndexIsMinusOneForAnOptionThatIsNotGiven)
{
    const Started application = started({QStringLiteral("user")});
    EXPECT_EQ(application->optionIndex(QStringLiteral("user")), -1);
    EXPECT_FALSE(application->optionPresent(QStringLiteral("user")));
}

TEST_F(TORVApplicationTest, TheIndexIsMinusOneWithoutArguments)
{
    const Started application = started({});
    EXPECT_EQ(application->optionIndex(QStringLiteral("user")), -1);
}

TEST_F(TORVApplicationTest, TheProgramItselfIsNoOption)
{
    Started application({QStringLiteral("--user=anna")});
    EXPECT_EQ(application->init(), 0);
    EXPECT_EQ(application->optionIndex(QStringLiteral("user")), -1);
    EXPECT_TRUE(application->getOptionValue(QStringLiteral("user")).isEmpty());
}

TEST_F(TORVApplicationTest, TheLastOfTwoValuesWins)
{
    const Started application = started({QStringLiteral("--user=anna"), QStringLiteral("-user=bert")});
    EXPECT_EQ(application->getOptionValue(QStringLiteral("user")), QLatin1String("bert"));
}

TEST_F(TORVApplicationTest, AnOptionWithoutValueDoesNotTakeBackAnEarlierValue)
{
    const Started application = started({QStringLiteral("--user=anna"), QStringLiteral("--user")});
    EXPECT_EQ(application->getOptionValue(QStringLiteral("user")), QLatin1String("anna"));
}

TEST_F(TORVApplicationTest, AnEmptyValueTakesBackAnEarlierOne)
{
    const Started application = started({QStringLiteral("--user=anna"), QStringLiteral("--user=")});
    EXPECT_TRUE(application->optionPresent(QStringLiteral("user")));
    EXPECT_TRUE(application->getOptionValue(QStringLiteral("user")).isEmpty());
}

TEST_F(TORVApplicationTest, AValueEndsAtWhiteSpace)
{
    const Started application = started({QStringLiteral("--user=anna maria")});
    EXPECT_EQ(application->getOptionValue(QStringLiteral("user")), QLatin1String("anna"));
}

TEST_F(TORVApplicationTest, AValueMayHoldAnEqualsSign)
{
    const Started application = started({QStringLiteral("--user=a=b")});
    EXPECT_EQ(application->getOptionValue(QStringLiteral("user")), QLatin1String("a=b"));
}

TEST_F(TORVApplicationTest, BringsANumberIntoItsRange)
{
    struct Row
    {
        const char* argument;
        int value;
    };

    // default 2, range 1 to 3
    for (const Row& row : {Row{"--user=1", 1}, Row{"--user=7", 3}, Row{"--user=-1", 1}, Row{"--user=abc", 1},
                           Row{"--user=99999999999", 1}, Row{"--user=", 2}, Row{"word", 2}}) {
        const Started application = started({QLatin1String(row.argument)});
        int value = 0;
        application->optionValue(QStringLiteral("user"), value, 2, 1, 3);
        EXPECT_EQ(value, row.value) << row.argument;
    }
}

TEST_F(TORVApplicationTest, BringsADefaultNumberIntoItsRangeToo)
{
    const Started application = started({});
    int value = 0;
    application->optionValue(QStringLiteral("user"), value, 9, 1, 3);
    EXPECT_EQ(value, 3);
}

TEST_F(TORVApplicationTest, GivesTheDefaultTextWithoutAValue)
{
    QString value;
    started({QStringLiteral("--user")})->optionValue(QStringLiteral("user"), value, QStringLiteral("anna"));
    EXPECT_EQ(value, QLatin1String("anna"));
    started({QStringLiteral("--user=bert")})->optionValue(QStringLiteral("user"), value, QStringLiteral("anna"));
    EXPECT_EQ(value, QLatin1String("bert"));
}

TEST_F(TORVApplicationTest, NamesTheProgramWithoutItsDirectory)
{
    struct Row
    {
        const char* program;
        const char* name;
    };

    for (const Row& row : {Row{"/usr/bin/viewer", "viewer"}, Row{"viewer", "viewer"}, Row{"./viewer", "viewer"},
                           Row{"a|viewer", "viewer"}}) {
        Started application({QLatin1String(row.program)});
        EXPECT_EQ(application->init(), 0);
        EXPECT_EQ(application->getExeName(), QLatin1String(row.name)) << row.program;
    }
}

TEST_F(TORVApplicationTest, LogsToAFileInTheHomeDirectoryWhenNoneIsNamed)
{
    const Started application = started({});
    EXPECT_EQ(application->getLogFileName(), home.filePath(QStringLiteral("viewer.log")));
}

TEST_F(TORVApplicationTest, LogsToTheRootDirectoryWhereThereIsNoHome)
{
    const Started application = started({});
    qputenv("HOME", QFile::encodeName(home.filePath(QStringLiteral("nowhere"))));
    EXPECT_EQ(application->getLogFileName(), QLatin1String("/viewer.log"));
}

TEST_F(TORVApplicationTest, TakesTheNamedLogFileEvenIfTheNameIsEmpty)
{
    EXPECT_EQ(started({QStringLiteral("--logfile=x")})->getLogFileName(), QLatin1String("x"));
    EXPECT_TRUE(started({QStringLiteral("--logfile")})->getLogFileName().isEmpty());
}

TEST_F(TORVApplicationTest, LeavesTheOptionsOfQtToQt)
{
    const Started application = started({QStringLiteral("-platform"), QStringLiteral("minimal")});
    EXPECT_EQ(application->optionIndex(QStringLiteral("platform")), -1);
}

TEST_F(TORVApplicationTest, StopsAtAnUnknownOption)
{
    for (const char* argument : {"--user=anna", "-x", "-", "--daemon"}) {
        Started application({QStringLiteral("viewer"), QLatin1String(argument)});
        EXPECT_LT(application->init(), 0) << argument;
    }
}

TEST_F(TORVApplicationTest, ReportsEachUnknownOption)
{
    const ProcessRun::Outcome outcome = ProcessRun(Probe)(
        {QStringLiteral("--first=1"), QStringLiteral("--version"), QStringLiteral("word"), QStringLiteral("-second")});
    EXPECT_EQ(outcome.output, QLatin1String("Invalid option: first\nInvalid option: second\n"));
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST_F(TORVApplicationTest, ListsItsOptionsInOrderOfTheirNames)
{
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QStringLiteral("--help")});
    EXPECT_EQ(outcome.output,
              QLatin1String("Usage: test_app_probe [options]\n"
                            "Options:\n"
                            "\t--daemon\trun in the background\n"
                            "\t--help\t\tdisplay this help and exit\n"
                            "\t--language\tlanguage='lang_[country]', lang is a two letter language code and \n"
                            "\t\t\t country is an optinal country code\n"
                            "\t--logfile\tlogfile='filename', name of the log file, only for background processes\n"
                            "\t--loglevel\tloglevel='number', adjust logging level, number can be\n"
                            "\t\t\t0 error (default)\n"
                            "\t\t\t1 warning\n"
                            "\t\t\t2 notice\n"
                            "\t\t\t3 debug\n"
                            "\t--version\tdisplay program version and exit\n"));
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST_F(TORVApplicationTest, OneDashAsksForTheVersionAsTwoDo)
{
    for (const QString& argument : {QStringLiteral("-version"), QStringLiteral("--version")}) {
        const ProcessRun::Outcome outcome = ProcessRun(Probe)({argument});
        EXPECT_EQ(outcome.output, QLatin1String("Version: 7.8.9\n"));
        EXPECT_EQ(outcome.exitCode, 1);
    }
}

TEST_F(TORVApplicationTest, HelpGoesBeforeVersion)
{
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QStringLiteral("--version"), QStringLiteral("--help")});
    EXPECT_TRUE(outcome.output.startsWith(QLatin1String("Usage: "))) << qUtf8Printable(outcome.output);
    EXPECT_FALSE(outcome.output.contains(QLatin1String("7.8.9")));
}

TEST_F(TORVApplicationTest, LogsAsMuchAsTheLogLevelAllows)
{
    const QStringList all = {QStringLiteral("E: an error"), QStringLiteral("W: a warning"),
                             QStringLiteral("N: a notice"), QStringLiteral("D: a detail")};

    struct Row
    {
        const char* argument;
        int lines;
    };

    for (const Row& row : {Row{"word", 1}, Row{"--loglevel=0", 1}, Row{"--loglevel=1", 2}, Row{"--loglevel=2", 3},
                           Row{"--loglevel=3", 4}, Row{"--loglevel=7", 4}, Row{"--loglevel=-1", 1},
                           Row{"--loglevel=abc", 1}, Row{"--loglevel", 1}}) {
        const bool isWord = row.argument[0] != '-';
        const QStringList words = {isWord ? QStringLiteral("levels") : QLatin1String(row.argument),
                                   isWord ? QStringLiteral("number") : QStringLiteral("levels")};
        const ProcessRun::Outcome outcome = ProcessRun(Probe)(words);
        EXPECT_EQ(outcome.logLines(), standardLines(QStringLiteral("test_app_probe"), all.mid(0, row.lines)))
            << row.argument << '\n'
            << qUtf8Printable(outcome.errors);
    }
}

TEST_F(TORVApplicationTest, WritesNumbersWithAPointWhereTheUserWritesAComma)
{
    const QTemporaryDir locales;
    const QString name = commaLocale(locales);
    if (name.isEmpty()) {
        GTEST_SKIP() << "this system can't make a Finnish locale (localedef and its sources)";
    }
    const auto underComma = [&](const QString& program) {
        return ProcessRun(program).with(QStringLiteral("LOCPATH"), locales.path()).with(QStringLiteral("LC_ALL"), name);
    };
    // The shell's own printf shows that the comma is there to be seen.
    const ProcessRun::Outcome control =
        underComma(QStringLiteral("/usr/bin/printf"))({QStringLiteral("%.1f"), QStringLiteral("1,5")});
    ASSERT_EQ(control.output, QLatin1String("1,5"));
    EXPECT_EQ(underComma(Probe)({QStringLiteral("number")}).output, QLatin1String("1.5\n"));
}

TEST_F(TORVApplicationTranslationTest, SpeaksFinnish)
{
    for (const QString& code : {QStringLiteral("fi"), QStringLiteral("fi_FI")}) {
        const ProcessRun::Outcome outcome =
            ProcessRun(Probe)({QLatin1String("--language=") + code, QStringLiteral("translate")});
        const QStringList lines = outcome.output.split(QLatin1Char('\n'));
        EXPECT_EQ(lines.first(), QStringLiteral("Aktiivinen käyttäjätunnus on %1"));
    }
}

TEST_F(TORVApplicationTranslationTest, LetsQtSpeakFinnishToo)
{
    const QString directory = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    if (!QFileInfo::exists(directory + QLatin1String("/qtbase_fi.qm"))) {
        GTEST_SKIP() << "Qt's own translations are not installed";
    }
    const ProcessRun::Outcome outcome =
        ProcessRun(Probe)({QStringLiteral("--language=fi"), QStringLiteral("translate")});
    EXPECT_EQ(outcome.output.split(QLatin1Char('\n')).value(1), QLatin1String("Peru"));
    EXPECT_EQ(outcome.logLines(), standardLines(QStringLiteral("test_app_probe"), {}));
}

TEST_F(TORVApplicationTranslationTest, SpeaksEnglishWithoutTheOption)
{
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QStringLiteral("translate")});
    EXPECT_EQ(outcome.output, QLatin1String("Active username is %1\nCancel\n"));
}

TEST_F(TORVApplicationTranslationTest, GoesOnInEnglishForAnUnknownLanguage)
{
    const ProcessRun::Outcome outcome =
        ProcessRun(Probe)({QStringLiteral("--language=xx"), QStringLiteral("translate")});
    EXPECT_EQ(outcome.output, QLatin1String("Active username is %1\nCancel\n"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.logLines(), standardLines(QStringLiteral("test_app_probe"),
                                                {QStringLiteral("E: Could not locate application translation: xx"),
                                                 QStringLiteral("E: Could not locate Qt translation: xx")}));
}

TEST_F(TORVApplicationTranslationTest, TakesATranslationFile)
{
    const QString file = home.filePath(QStringLiteral("own.words.qm"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/translations/torv3d_fi.qm"), file));
    const ProcessRun::Outcome outcome =
        ProcessRun(Probe)({QLatin1String("--language=") + file, QStringLiteral("translate")});
    EXPECT_EQ(outcome.output, QStringLiteral("Aktiivinen käyttäjätunnus on %1\nCancel\n"));
    EXPECT_EQ(outcome.logLines(), standardLines(QStringLiteral("test_app_probe"),
                                                {QStringLiteral("E: Could not locate Qt translation: ")}));
}

TEST_F(TORVApplicationTranslationTest, RefusesAFileThatIsNoTranslation)
{
    const QString file = home.write(QStringLiteral("notes.txt"), "words");
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QLatin1String("--language=") + file});
    EXPECT_EQ(outcome.logLines(), standardLines(QStringLiteral("test_app_probe"),
                                                {QLatin1String("E: Invalid translation file: ") + file,
                                                 QStringLiteral("E: Could not locate application translation: "),
                                                 QStringLiteral("E: Could not locate Qt translation: ")}));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(TORVApplicationTranslationTest, RefusesADamagedTranslationFile)
{
    const QString file = home.write(QStringLiteral("torn.qm"), "words");
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QLatin1String("--language=") + file});
    EXPECT_EQ(outcome.logLines().value(1), QLatin1String("E: Could not locate application translation: "));
}

TEST_F(TORVApplicationTranslationTest, TakesADirectoryOfThatNameForNoFile)
{
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("fi")));
    const ProcessRun::Outcome outcome =
        ProcessRun(Probe).in(home.path())({QStringLiteral("--language=fi"), QStringLiteral("translate")});
    EXPECT_TRUE(outcome.output.startsWith(QLatin1String("Aktiivinen"))) << qUtf8Printable(outcome.errors);
}
