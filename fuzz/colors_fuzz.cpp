// A colour file of any content must give a map and a legend for every data type, without an assertion and without a
// number that can't be drawn.

#include "datalib/TORVDataType.h"
#include "visualization/TORVColormap.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <vtkColorTransferFunction.h>
#include <vtkScalarBarActor.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace
{

// A directory for each input: Qt remembers what it has read from a file of that name, time and size.
void writeInput(const QTemporaryDir& home, const uint8_t* bytes, size_t size)
{
    QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
    QDir().mkpath(home.filePath(QStringLiteral("Halmera")));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    const QString path = home.filePath(QStringLiteral("Halmera/TORV3DColors.conf"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("can't write %s", qUtf8Printable(path));
    }
    file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(size));
}

void ask(const TORVColormap& map, const TORVDataType& type)
{
    auto* const function = vtkColorTransferFunction::SafeDownCast(map.getMap());
    for (const double value : {-1e9, type.getMinDisplayValue(), 0.0, 12.5, type.getMaxDisplayValue(), 1e9}) {
        double rgb[3];
        function->GetColor(value, rgb);
        if (!std::isfinite(rgb[0] + rgb[1] + rgb[2])) {
            qFatal("no colour at %g", value);
        }
        map.getLabel(value);
    }
    map.makeBar(map.getScaleName(), 0.1, 0.05, 0.8, 0.95);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QTemporaryDir home;
    writeInput(home, bytes, size);
    for (const int code : {2, 3, 5, 13}) {
        const TORVDataType type(code, 1000, 0, 533, 0);
        TORVColormap::getDataTypeLegendInfo(code);
        ask(TORVColormap(QStringLiteral("Default"), type, TORVColormap::DISPLAY_VALUES, code), type);
        ask(TORVColormap(1, type, TORVColormap::ABSOLUTE_VALUES), type);
    }
    return 0;
}
