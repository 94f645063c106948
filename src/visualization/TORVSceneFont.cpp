#include "visualization/TORVSceneFont.h"

#include <QByteArray>
#include <QFile>
#include <QStandardPaths>
#include <QStringList>

#include <vtkTextProperty.h>

namespace
{

QByteArray findFile()
{
    const QStringList roots = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (const QString& root : roots) {
        const QString path = root + QLatin1String("/fonts/truetype/open-sans/OpenSans-Semibold.ttf");
        if (QFile::exists(path)) {
            return QFile::encodeName(path);
        }
    }
    return {};
}

} // namespace

void TORVSceneFont::apply(vtkTextProperty* property, int size)
{
    static const QByteArray file = findFile();
    property->SetFontFamilyToArial();
    if (!file.isEmpty()) {
        property->SetFontFile(file.constData());
        property->SetFontFamily(VTK_FONT_FILE);
    }
    property->SetFontSize(size);
    property->BoldOff();
    property->ItalicOff();
    property->ShadowOff();
}
