#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <functional>

/**
 * Asks a file system about a path without waiting for it: that of a server that has gone answers after minutes or not
 * at all. Of several questions only the newest gets its answer.
 *
 * Each question has a thread of its own, up to four at once; a path that is being asked about isn't asked about again.
 * A thread that gets no answer is left behind when the object goes; it touches nothing of the program any more.
 *
 * Thread: the one that the object lives on, which also gets the answers.
 */
class TORVPathProbe final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVPathProbe)

public:
    static constexpr int MostThreads = 4;

    struct Reading
    {
        QString path;
        bool isDirectory = false; ///< one that is there
        quint64 device = 0;       ///< number of the file system that holds it
        int total_MiB = 0;        ///< 0 where the sizes aren't known
        int available_MiB = 0;    ///< to a user without privileges
    };

    /// May block. Called on other threads, several at once.
    using Look = std::function<Reading(const QString& path)>;

    explicit TORVPathProbe(QObject* parent = nullptr, Look look = &TORVPathProbe::look);
    ~TORVPathProbe() override;

    /// The path is taken as it is.
    void ask(const QString& path);

    /// What the operating system tells; blocks for as long as it does.
    static Reading look(const QString& path);

    /// The path that a user means: blanks around it don't count, a "~" at its beginning is the home directory, and one
    /// that isn't absolute begins in the current directory. An empty text stays empty.
    static QString absolutePath(const QString& text);

Q_SIGNALS:
    void answered(const TORVPathProbe::Reading& reading);

    /// Emitted on the threads that ask, for this object itself.
    void looked();

private:
    struct Mailbox;

    void launch(const QString& path);
    void takeReadings();
    void take(const Reading& reading);

    const Look _look;
    boost::shared_ptr<Mailbox> _mailbox; // shared with the threads
    QStringList _asked;                  // the paths that threads are asking about
    QString _newest;
    bool _isAnswered = true; // the newest
};
