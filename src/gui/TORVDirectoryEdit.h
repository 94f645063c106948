#pragma once

#include "gui/TORVPathProbe.h"

#include <QLineEdit>

class QAction;

/**
 * A line for the path of a directory. While it is being typed it is marked, by colour and by an icon with words, as
 * long as no such directory exists. The disk is asked on another thread; until it has answered the mark stays what it
 * was. An empty line is not marked: there is nothing that could be wrong.
 *
 * The mark's icon is that of the action "error".
 *
 * Thread: main thread only.
 */
class TORVDirectoryEdit final : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDirectoryEdit)

public:
    explicit TORVDirectoryEdit(QWidget* parent = nullptr);

    /// What was typed, as an absolute path; empty for an empty line.
    QString absolutePath() const { return TORVPathProbe::absolutePath(text()); }

    /// Whether it is marked.
    bool isInvalid() const { return !_errorText.isEmpty(); }

    /// Translated; empty where nothing is wrong.
    QString errorText() const { return _errorText; }

    /// Looks again, for a directory that may have come or gone.
    void checkDirectory();

Q_SIGNALS:
    /// What is in the line has been looked at.
    void checked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void take(const TORVPathProbe::Reading& reading);
    void mark(const QString& errorText);
    void updateColor();

    TORVPathProbe _probe;
    QAction* _markAction; // a child
    QString _errorText;
};
