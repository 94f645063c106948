#include "iconmaker/TORVIconSource.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace
{

const char* const ColorVariable = "currentColor";
const char* const ToneFill = "class=\"tone\" fill=\"none\"";
const char* const AlertFill = "class=\"alert\" fill=\"currentColor\"";
const char* const PlainGroup = "class=\"plain\"";
const char* const SelectedGroup = "class=\"selected\" display=\"none\"";
constexpr double ToneOpacity = 0.3;

QByteArray fill(const QColor& color)
{
    return "fill=\"" + color.name().toLatin1() + '"';
}

} // namespace

TORVIconSource::TORVIconSource(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        _error = fileName + QLatin1String(": ") + file.errorString();
        return;
    }
    _svg = file.readAll();
    if (!QSvgRenderer(_svg).isValid()) {
        _error = fileName + QLatin1String(": not a drawing");
    }
}

bool TORVIconSource::hasColorVariable() const
{
    return _svg.contains(ColorVariable);
}

QByteArray TORVIconSource::inForm(const Form& form) const
{
    QByteArray svg = _svg;
    svg.replace(AlertFill, fill(form.alert));
    if (form.isSelected) {
        svg.replace(ToneFill, fill(form.color) + " fill-opacity=\"" + QByteArray::number(ToneOpacity) + '"');
        svg.replace(SelectedGroup, "");
        svg.replace(PlainGroup, "display=\"none\"");
    }
    return svg.replace(ColorVariable, form.color.name().toLatin1());
}

QImage TORVIconSource::render(const Form& form, int size) const
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(inForm(form));
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}
