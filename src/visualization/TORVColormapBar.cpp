// The legend of a colour map.

#include "visualization/TORVColorBarActor.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVSceneFont.h"

#include <QStringList>

#include <vtkColorTransferFunction.h>
#include <vtkTextProperty.h>

#include <cstdio>

namespace
{

constexpr int TitleSize = 12;
constexpr int LabelSize = 11;
constexpr double DayText[3] = {.894, .918, .933};

} // namespace

QString TORVColormap::getLabel(double seam) const
{
    char text[400]; // a double of 309 digits fits
    const QByteArray format = _labelFormat.toLatin1();
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral" // looked at when it was read
    std::snprintf(text, sizeof text, format.constData(), seam);
#pragma GCC diagnostic pop
    return QString::fromLatin1(text).trimmed();
}

vtkSmartPointer<vtkScalarBarActor> TORVColormap::makeBar(const QString& title, double x, double y, double width,
                                                         double height) const
{
    auto bar = vtkSmartPointer<TORVColorBarActor>::New();
    const vtkSmartPointer<vtkColorTransferFunction> map = makeMap();
    const std::size_t nodes = nodeCount();
    std::vector<TORVColorBarActor::Seam> seams;
    for (std::size_t i = 0; i < nodes; ++i) {
        seams.push_back({_scale[i], getLabel(_scale[i]).toStdString()});
    }
    if (_scale.size() > nodes) {
        // The seam that closes the last band has no colour of its own: above it the map stays as it is.
        const Point& top = _colors[nodes - 1];
        map->AddRGBPoint(_scale[nodes], top.lowerR / 255.0, top.lowerG / 255.0, top.lowerB / 255.0);
        seams.push_back({_scale[nodes], getLabel(_scale[nodes]).toStdString()});
    }
    bar->SetLookupTable(map);
    bar->SetSeams(seams);
    bar->SetMaximumNumberOfColors(getNRenderedColors());
    QStringList lines{title, _dataUnits == QLatin1String("N/A") ? QString() : _dataUnits};
    lines.removeAll(QString());
    bar->SetTitle(lines.join(QLatin1Char('\n')).toUtf8().constData());
    bar->SetLabelFormat(_labelFormat.toLatin1().constData());
    TORVSceneFont::apply(bar->GetTitleTextProperty(), TitleSize);
    TORVSceneFont::apply(bar->GetLabelTextProperty(), LabelSize);
    bar->SetTextColor(DayText[0], DayText[1], DayText[2]);
    bar->UnconstrainedFontSizeOn();
    bar->SetPosition(x, y);
    bar->SetWidth(width);
    bar->SetHeight(height);
    return bar;
}
