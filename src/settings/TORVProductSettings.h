#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

class QSettings;
class TORVDataType;

/**
 * How one product of one configuration is drawn: as a volume or as isosurfaces, with which surfaces and opacities and
 * with which colour scale. The record of each product stands in a group of its own in the user's settings, named by
 * "PRODUCT", the product and the configuration.
 *
 * Display values are in the unit of the product's data type; opacities are percentages. What a file says is taken with
 * care: an opacity comes back to 0..100, a number that is none or not finite counts as absent.
 *
 * Thread: any thread, one at a time for each object; `load` and `save` borrow the settings, so the caller must not
 * hold them.
 */
class TORVProductSettings
{
public:
    using Ptr = boost::shared_ptr<TORVProductSettings>;
    using CPtr = boost::shared_ptr<const TORVProductSettings>;
    using SurfaceParContainer = QMap<double, int>; ///< iso value in display units to opacity in percent

    /// The numbers that are not -1 stand for "volume" and "surface" in the file, -1 for any other text.
    enum RenderingType : int
    {
        UNKNOWN = -1,
        VOLUME = 0,
        SURFACE = 1
    };

    /// An empty record that belongs to no product.
    TORVProductSettings() = default;

    /// The record of that product, loaded.
    TORVProductSettings(const QString& product, const QString& configuration, const TORVDataType& type);

    virtual ~TORVProductSettings();
    TORVProductSettings(const TORVProductSettings&) = default;
    TORVProductSettings& operator=(const TORVProductSettings&) = default;

    /// A product that is seen for the first time gets the defaults, and these are saved at once.
    void load(const QString& product, const QString& configuration, const TORVDataType& type);
    void save() const;

    /// The defaults for that data type, or for an unknown one if `type` is null; the names stay.
    void reset(const TORVDataType* type);

    /**
     * Whether `other`, the newer record, draws differently. The numbers of the mode that `other` doesn't use don't
     * count. Never for a null pointer.
     * @param reasons  gets a line for each kind of difference, if not null; untranslated
     */
    bool hasChanged(const boost::shared_ptr<const TORVProductSettings>& other, QStringList* reasons) const;

    QString renderingTypeToString() const;

    QString getProduct() const { return _product; }
    QString getConfiguration() const { return _configuration; }

    QString getColorScaleName() const { return _colorScaleName; }
    void setColorScaleName(const QString& name) { _colorScaleName = name; }

    RenderingType getRenderingType() const { return _renderingType; }
    void setRenderingType(RenderingType type) { _renderingType = type; }

    /// Iso value to opacity.
    const QMap<double, int>& getSurfaces() const { return _surfaces; }
    void setSurfaces(const QMap<double, int>& surfaces) { _surfaces = surfaces; }

    double getVolumeValueLow() const { return _volumeValueLow; }
    void setVolumeValueLow(double value) { _volumeValueLow = value; }

    double getVolumeOpacityLow() const { return _volumeOpacityLow; }
    void setVolumeOpacityLow(double opacity) { _volumeOpacityLow = opacity; }

    double getVolumeValueHigh() const { return _volumeValueHigh; }
    void setVolumeValueHigh(double value) { _volumeValueHigh = value; }

    double getVolumeOpacityHigh() const { return _volumeOpacityHigh; }
    void setVolumeOpacityHigh(double opacity) { _volumeOpacityHigh = opacity; }

private:
    struct Number; // a row of the table of numbers
    static const Number Numbers[];

    QString groupName() const;
    void readValues(QSettings& settings, const TORVDataType& type);
    void readSurfaces(QSettings& settings, double byDefault);
    void writeSurfaces(QSettings& settings) const;
    bool hasOtherNumbers(const TORVProductSettings& other) const;

    QString _product;
    QString _configuration;
    QString _colorScaleName;
    RenderingType _renderingType = SURFACE;
    QMap<double, int> _surfaces;
    double _volumeValueLow = -9999.0;
    double _volumeOpacityLow = 1.0;
    double _volumeValueHigh = 9999.0;
    double _volumeOpacityHigh = 100.0;
};
