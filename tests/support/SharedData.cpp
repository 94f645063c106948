#include "support/SharedData.h"

#include <QDir>

bool SharedData::isPresent()
{
    return QDir(path(QStringLiteral("3d"))).exists();
}

QString SharedData::path(const QString& name)
{
    return QDir::cleanPath(QStringLiteral(TORV_SOURCE_DIR "/../shared/data/") + name);
}
