#pragma once

#include <QAction>
#include <QObject>
#include <QString>

/**
 * Stands in for the main window, so that the start and the end of the program can be tested without a display: it says
 * on standard output what happens to it, and triggers its exit action as soon as the event loop runs.
 */
class TORVGUI final : public QObject
{
    Q_OBJECT

public:
    TORVGUI();
    ~TORVGUI() override;

    void setWindowTitle(const QString& title);
    void show();

    QAction* fileExit;

private Q_SLOTS:
    void historyAdd(QString const& text);
};
