#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <ostream>

// How Google Test shows Qt's values; part of the precompiled header of the tests, so that all see the same.

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& texts, std::ostream* out)
{
    *out << '"' << texts.join(QLatin1String("\", \"")).toStdString() << '"';
}

inline void PrintTo(const QDateTime& time, std::ostream* out)
{
    *out << time.toString(Qt::ISODateWithMs).toStdString();
}
