#pragma once

#include <QApplication>
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>

class QSocketNotifier;
class QTranslator;

/**
 * The process: command line, start of logging, translators, and services that the rest asks the operating system for.
 *
 * Options are written with one or two dashes, `-name`, `--name` or `--name=value`. A name is made of lower case letters
 * and underscores; a value ends at the first white space. An argument without a dash is ignored. Qt takes its own
 * options (`-platform`, `-style`, ...) off the command line before this class sees it, every other name that is not in
 * the option table is refused.
 *
 * The daemon part (`startDaemon`, `updatePIDFile`, `setupNativeSignals`) runs only when the option "daemon" is in the
 * table, which a background process adds before `init` and the viewer doesn't.
 *
 * Numbers of the C library are always written and read with a decimal point: the constructor takes back the user's
 * numeric locale that Qt has put in force, since texts for PROJ and for files are made of them.
 *
 * Thread: main thread only, but for the static functions, which any thread may call.
 */
class TORVApplication : public QApplication
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVApplication)

public:
    static const QString ORGANIZATION_NAME;   ///< "Halmera": names the directory of the settings files
    static const QString ORGANIZATION_DOMAIN; ///< "halmera.example": plays no part in file locations
    static const QString BG_SERVICE_NAME;     ///< "torv3dviewd": the service that renders images unattended
    static const QString VERSION;             ///< of this build, as the project states it: "1.0.2"

    /// How long a command that answers at once may take before it counts as stuck.
    static constexpr int CommandTimeLimit_ms = 5000;

    /// `argc` and `argv` must outlive the object.
    TORVApplication(int& argc, char** argv);
    ~TORVApplication() override;
    void setVersion(const QString& version) { _version = version; }
    bool isDaemon() const { return _isDaemon; }

    /// Inserts or replaces; the help text may hold line ends and tabs.
    void addOption(const QString& name, const QString& helpText);

    /// Reads the command line, starts logging and the translators. @return 0 to go on, negative to stop.
    virtual int init();
    virtual void printHelp() const;
    virtual void printVersion() const;

    /// Reports each unknown option on standard output. @return whether there was none.
    bool checkOptions() const;
    /// Index of the first argument of that name, -1 if none.
    int optionIndex(const QString& name) const;
    bool optionPresent(const QString& name) const;
    /// Value of the last argument of the form name=value, empty if none.
    QString getOptionValue(const QString& name) const;
    /// The value as a decimal number (0 if it is none), or the default if there is no value, brought into [min, max].
    void optionValue(const QString& name, int& value, int defaultValue, int min, int max) const;
    void optionValue(const QString& name, QString& value, const QString& defaultValue) const;

    /// Name of the program without its directory; empty before `init`.
    QString getExeName() const;
    QString getLogFileName() const;

    /// An empty name means the console.
    void startLogging(const QString& logFileName) const;

    /// Option "language": a language code with a translation in the resources, or the path of a .qm file.
    void installTranslators();

    /**
     * Goes on in a child process without terminal, in the home directory.
     * The standard streams lead to /dev/null afterwards: were they only closed, the next descriptors to be opened would
     * take their numbers, and a warning written to standard error would end up in them.
     * @return 0 in the child, -1 on failure, -2 in the parent.
     */
    int startDaemon();

    /// Writes the process id into the file that the environment variable PIDFILE names.
    void updatePIDFile() const;

    /// From here on SIGHUP is logged and SIGTERM quits the event loop.
    void setupNativeSignals();

    /// Name of an option argument (may be empty for a lone dash), a null string for any other argument.
    static QString optionName(const QString& argument);

    /// The environment variable USER.
    static QString getLoginUser();
    /// A null string when the variable is unset.
    static QString getEnvVar(const QString& name);
    static int getMyPid();

    /// Where services keep their start-up variables; empty if the system has no such directory.
    static QString getSystemConfigurationDirectory();

    /**
     * Home directory as the user data base has it; empty for an empty or unknown name.
     * A name that isn't in /etc/passwd is looked up through the system's name service (users of a directory server). A
     * file that is there but can't be read gives "/home/" and the name, a file that is missing gives the root path.
     * @param passwdFile  read in place of /etc/passwd; the name service is then left out.
     */
    static QString getUserHomeDirectory(const QString& user, const QString& passwdFile = QStringLiteral("/etc/passwd"));

    /// Empty if the home directory is.
    static QString getUserSettingsDirectory(const QString& user);

    /**
     * Space of the file system that holds `path`, in mebibytes as `mebibytes` reckons them.
     * A total of 0 with the result true means that the figures are not available.
     * @return false, both figures 0, if the path can't be asked.
     */
    static bool getDiskSpace(const QString& path, int& total, int& available);

    /// Size of `blocks` blocks of `blockSize` bytes: the block size counts in whole kibibytes, so that one below 1024
    /// gives 0; a result that an int can't hold becomes the largest int.
    static int mebibytes(quint64 blockSize, quint64 blocks);

    /**
     * Whether "service NAME status" ends normally with status 0.
     * Blocks for up to the time limit; at the first call in the process also for up to CommandTimeLimit_ms while the
     * command is looked for. A command that is not found is not looked for again. For a worker thread, not for one
     * that has a window to keep alive.
     */
    static bool isServiceRunning(const QString& name, int timeLimit_ms = CommandTimeLimit_ms);

    /**
     * Runs a program to its end and blocks as long.
     * @param output  gets what it wrote to its standard output, if not null
     * @return its exit status; -1 if it didn't start, crashed, or was stopped at the time limit.
     */
    static int runCommand(const QString& program, const QStringList& arguments, int timeLimit_ms,
                          QByteArray* output = nullptr);

private Q_SLOTS:
    void handleSigHup();
    void handleSigTerm();

private:
    void addStandardOptions();
    bool loadApplicationTranslation(const QString& language, QString& code);
    QSocketNotifier* makeNotifier(int descriptor, const char* slot);

    static QString resolveServiceCommand();
    // Signal handlers: they write one byte, which is all that may be done there.
    static void hupSignalHandler(int signal);
    static void termSignalHandler(int signal);

    bool _isDaemon = false;
    QString _version;
    QStringList _arguments;
    QMap<QString, QString> _options; // name to help text
    QSocketNotifier* _hupNotifier = nullptr;
    QSocketNotifier* _termNotifier = nullptr;
    std::unique_ptr<QTranslator> _appTranslator;
    std::unique_ptr<QTranslator> _qtTranslator;

    static QString serviceCommand; // empty until it was looked for; under a mutex of its own
    // Socket pairs: the handler writes to the first descriptor, the event loop reads from the second.
    static int sighupFd[2];
    static int sigtermFd[2];
};
