#pragma once

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "support/ProductFiles.h"

#include <QDir>

#include <gmock/gmock.h>

/**
 * Product files by what a tree looks at: site, product, quantity, levels, and the time of the data, in seconds after
 * 2026-07-14 12:00:00 UTC. The key of time is in the name of the file and has nothing to do with it.
 *
 * Thread: test's thread.
 */
class TreeTest : public testing::Test
{
protected:
    enum Product : uint16_t
    {
        PPI = 1,
        CAPPI = 3,
        MAX = 16,
        UNKNOWN = 99
    };

    enum Quantity : uint16_t
    {
        Z = 2,
        V = 3,
        NONE = 12
    };

    static QDateTime at(int seconds) { return QDateTime(QDate(2026, 7, 14), QTime(12, 0), Qt::UTC).addSecs(seconds); }

    static TORVProductFields volume(const QByteArray& site, Quantity quantity = Z, int seconds = 0)
    {
        return product(site, CAPPI, 2, quantity, seconds);
    }

    static TORVProductFields flat(const QByteArray& site, Product kind, Quantity quantity = Z, int seconds = 0)
    {
        return product(site, kind, 1, quantity, seconds);
    }

    static TORVProductFields product(const QByteArray& site, Product kind, int levels, Quantity quantity, int seconds)
    {
        TORVProductFields fields = ProductFiles::small();
        fields.siteName = site;
        fields.productType = kind;
        fields.dataType = quantity;
        fields.zPoints = levels;
        setTime(fields, at(seconds));
        return fields;
    }

    static void setTime(TORVProductFields& fields, const QDateTime& time)
    {
        fields.dataYear = static_cast<uint16_t>(time.date().year());
        fields.dataMonth = static_cast<uint16_t>(time.date().month());
        fields.dataDay = static_cast<uint16_t>(time.date().day());
        fields.dataSeconds = static_cast<uint32_t>(time.time().msecsSinceStartOfDay() / 1000);
    }

    QString path() const { return QDir(files.path(QString())).absolutePath(); }

    QString write(const QString& name, const TORVProductFields& fields) const { return files.write(name, fields); }

    // The answer as a list of its keys.
    static QStringList keys(const TORVDirTop::LeavesPtr& leaves) { return leaves->keys(); }

    ProductFiles files;
};
