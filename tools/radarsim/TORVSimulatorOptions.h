#pragma once

#include "radarsim/TORVGridShape.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

struct TORVProductKind;

/**
 * What the user asked the simulator for.
 *
 * Thread: a plain value, any thread.
 */
struct TORVSimulatorOptions
{
    /// What to do.
    enum Action : int
    {
        GENERATE,
        SHOW_HELP,
        DRAW_PICTURE,
        REJECT ///< `error` says why
    };

    static TORVSimulatorOptions parse(const QStringList& arguments);

    /// The whole text of --help.
    static QString helpText();

    Action action = GENERATE;
    QString error;

    QString out;
    int sites = 2;
    double hours = 6.0;
    int step = 5; ///< minutes
    TORVGridShape size;
    uint32_t seed = 1;
    QDateTime end; ///< time of the archive's last product, UTC; invalid: the present when live, else a fixed evening
    double live = -1.0;  ///< seconds for each step after the archive; below 0: end after the archive
    double keep = -1.0;  ///< hours of products to keep; below 0: all
    bool slow = false;   ///< files grow in pieces
    bool faults = false; ///< bad files among the good ones
    bool wide = false;   ///< two bytes an item
    int threads = 0;     ///< 0: as many as the machine has
    bool terrain = true;
    std::vector<const TORVProductKind*> products;

    QString pictureFrom; ///< product file to draw
    QString pictureTo;   ///< PNG to draw it into

    bool isLive() const { return live >= 0.0; }
};
