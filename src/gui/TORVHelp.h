#pragma once

#include <QMenu>

class QSettings;

/**
 * The help menu. Its entries come from the settings file, group "HELP", array "HELPITEMS" with "title", "command" and
 * "arg" each; the title "SEPARATOR" makes a line. Without entries the menu is empty.
 *
 * The settings are read once, through an object of its own that never writes.
 *
 * Thread: main thread only.
 */
class TORVHelp final : public QMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVHelp)

public:
    explicit TORVHelp(QWidget* parent);

private:
    void addItem(const QSettings& settings);
};
