#pragma once

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QThread>

#include <boost/shared_ptr.hpp>

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>
