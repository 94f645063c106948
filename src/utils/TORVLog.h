#pragma once

#include <QMutex>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class QFile;
class QTextStream;

/**
 * The one logger of the process. It has two faces that are kept apart: a levelled text log for engineers, and signals
 * that feed what the user sees in the main window (history list and status bar).
 *
 * Thread: `logLog` and its four short forms, `logHistory` and `logStatus` from any thread; a receiver on another
 * thread gets the signals queued. `setLevel`, `logInit`, `logOpen` and `logConnect` belong to the main thread, before
 * other threads exist; `Instance` is first called there.
 */
class TORVLog final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVLog)

public:
    enum Level : int
    {
        LEVEL_ERROR = 0,
        LEVEL_WARNING = 1,
        LEVEL_NOTICE = 2,
        LEVEL_DEBUG = 3
    };

    static TORVLog* Instance();

    /// Lines above `level` are dropped; a value outside the enumeration is brought to its nearer end.
    void setLevel(Level level);

    /// Opens the log and writes its first line. Anything logged before is dropped.
    void logInit(const QString& programName, const QString& fileName);

    /// An empty name, or a file that can't be opened, means standard error.
    void logOpen(const QString& fileName);

    /// Does nothing: the log file is never opened a second time.
    void logReopen();

    /// Whether a line of that level would be written: for places that would make a text a hundred thousand times.
    bool isShown(Level level) const { return level <= _level && _stream; }

    void logLog(const QString& text, Level level);
    void logError(const QString& text);
    void logWarning(const QString& text);
    void logNotice(const QString& text);
    void logDebug(const QString& text);

    /// Only for the user's eyes: nothing goes to the text log.
    void logHistory(const QString& text);
    void logHistory(const QStringList& lines);

    /// `timeout` in seconds, below 1 for a message that stays.
    void logStatus(const QString& text, int timeout);

    /**
     * Connects the receiver's slots, given in the form of SLOT(), and greets it with the first history line.
     * The list form of `historyAdd` is the receiver's own to connect.
     * @return whether the status slot could be connected.
     */
    bool logConnect(const QObject* receiver, const char* historySlot, const char* statusSlot);

    /// Empty on the console, local date and time and a blank in a file.
    QString timestamp() const;

Q_SIGNALS:
    // Emitted on the thread that logs.
    void historyAdd(QString const& text);
    void historyAdd(QStringList const& lines);
    void statusAdd(QString const& text, int timeout);

private:
    TORVLog();
    ~TORVLog() override;

    void openConsole();
    void writeLine(const QString& text); // under _mutex

    std::unique_ptr<QTextStream> _stream; // guarded by _mutex once logInit has run
    std::unique_ptr<QFile> _file;
    QMutex _mutex;
    int _level = LEVEL_ERROR;
};
