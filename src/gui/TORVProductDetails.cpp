#include "gui/TORVProductDetails.h"

#include "datalib/TORVDataType.h"
#include "datalib/TORVFile.h"
#include "settings/TORVGeneralSettings.h"

#include <QCoreApplication>
#include <QLocale>

#include <limits>

namespace
{

constexpr double MetresPerCentimetre = 0.01;
constexpr double MetresPerKm = 1000.0;
constexpr int BitsPerByte = 8;

// The two types that scale with the Nyquist velocity, and the raw value that is one Nyquist velocity.
constexpr int Velocity8 = 3;
constexpr int Width8 = 4;
constexpr unsigned int NyquistOfVelocity8 = 255;
constexpr unsigned int NyquistOfWidth8 = 256;

const QLatin1String Comma(", ");
const QLatin1String By(" x ");

QString translated(const char* text)
{
    return QCoreApplication::translate("TORVProductInformationDialog", text);
}

QString siteHeight(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const int ground = file.getGroundElevation();
    const int antenna = file.getRadarElevation() - ground;
    return settings.formattedSmallLength(file.getRadarElevation(), 0) + QLatin1String(" (") +
           settings.formattedSmallLength(ground, 0) + QLatin1String(" + ") + settings.formattedSmallLength(antenna, 0) +
           translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", " ASL)"));
}

QString gridStep(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const int wholeMetre = static_cast<int>(1.0 / MetresPerCentimetre);
    const auto step = [&](int scale_cm) {
        const bool isWhole = scale_cm % wholeMetre == 0 || !settings.isMetricUnits();
        return settings.formattedSmallLength(scale_cm * MetresPerCentimetre, isWhole ? 0 : 2);
    };
    return step(file.getXScale()) + Comma + step(file.getYScale()) + Comma + step(file.getZScale());
}

QString extent(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const auto big = [&](double m) { return QString::number(settings.getCorrectLengthBig(m / MetresPerKm), 'f', 1); };
    return big(file.getWidthM()) + By + big(file.getLengthM()) + By +
           settings.formattedBigLength(file.getHeightM() / MetresPerKm, 1);
}

// By PROJ's names, which don't change with the language.
QString projection(const TORVFile& file)
{
    const QString type = file.getProjectionTypeProj4();
    if (type == QLatin1String("aeqd")) {
        return translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", "Azimuthal Equidistant"));
    }
    return type == QLatin1String("merc") ? translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", "Mercator"))
                                         : QString();
}

QString earthModel(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const QString radius = settings.formattedBigLength(file.getEarthRadius() / MetresPerKm, 1);
    const double flattening = file.getEarthInvFlattening();
    if (flattening >= static_cast<double>(std::numeric_limits<float>::max())) {
        return translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", "Sphere, %1")).arg(radius);
    }
    return translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", "Ellipsoid, %1, 1/%2"))
        .arg(radius, QString::number(flattening, 'f', 3));
}

QString nyquist(const TORVDataType& type)
{
    const int rawType = type.getRawType();
    if (rawType != Velocity8 && rawType != Width8) {
        return {};
    }
    const unsigned int raw = rawType == Velocity8 ? NyquistOfVelocity8 : NyquistOfWidth8;
    return QString::number(type.absoluteToDisplayValue(raw), 'f', 2) + QLatin1Char(' ') + type.getQuantityUnit();
}

QString valueRange(const TORVDataType& type)
{
    if (type.getRawType() < 0) {
        return {};
    }
    return translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", "%1 to %2 %3"))
        .arg(QString::number(type.getMinDisplayValue(), 'f', 1), QString::number(type.getMaxDisplayValue(), 'f', 1),
             type.getQuantityUnit());
}

QString size(const TORVFile& file)
{
    const QString bytes =
        QLocale::c().formattedDataSize(file.getTotalFileSize(), 1, QLocale::DataSizeTraditionalFormat);
    return translated(QT_TRANSLATE_NOOP("TORVProductInformationDialog", "%1, %2 bits a point"))
        .arg(bytes)
        .arg(BitsPerByte * file.getItemSize());
}

} // namespace

QStringList TORVProductDetails::of(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const TORVDataType type = file.getDataType();
    QStringList texts;
    texts.reserve(DETAIL_COUNT);
    texts << settings.formatCoordinates(file.getSiteCoordinates(), TORVCoordinate::LATITUDE_AND_LONGITUDE)
          << siteHeight(file, settings)
          << QString::number(file.getXPoints()) + By + QString::number(file.getYPoints()) + By +
                 QString::number(file.getZPoints())
          << gridStep(file, settings) << extent(file, settings) << projection(file) << earthModel(file, settings)
          << nyquist(type) << valueRange(type) << size(file) << file.getName();
    return texts;
}

QString TORVProductDetails::quantity(const TORVFile& file)
{
    const TORVDataType type = file.getDataType();
    return type.getRawType() < 0 ? QString() : type.getQuantityName() + Comma + type.getQuantityUnit();
}

QString TORVProductDetails::product(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const QString configuration = file.getConfiguration();
    const QString product =
        configuration.isEmpty() ? file.getProduct() : file.getProduct() + QLatin1String(" - ") + configuration;
    const QString dot = QStringLiteral("  %1  ").arg(QChar(0x00B7));
    return file.getSite() + dot + product + dot + settings.formattedTime(file.getDataTime());
}
