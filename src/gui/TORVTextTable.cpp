#include "gui/TORVTextTable.h"

#include <QFile>

QStringList TORVTextTable::readLines(const QString& fileName, QStringList& errors)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        errors << fileName + QLatin1String(": ") + file.errorString();
        return {};
    }
    QStringList rows;
    const QStringList lines = QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString row = line.simplified();
        if (!row.isEmpty() && !row.startsWith(QLatin1Char('#'))) {
            rows << row;
        }
    }
    return rows;
}
