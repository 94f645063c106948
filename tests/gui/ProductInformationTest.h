#pragma once

#include "gui/TORVProductInformationDialog.h"

#include "FakeDialogParent.h"
#include "datalib/StoreTest.h"
#include "settings/TORVConfig.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/ColorFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>

/**
 * The product information of volumes on a disk, in a window that shows what a test gives it. Reflectivity has two
 * colour scales, "Default" from dark red at 0 to blue at 50 dBZ and "Other" all green; velocity has one, and rain has
 * none.
 *
 * Thread: test's thread.
 */
class ProductInformationTest : public StoreTest
{
protected:
    static constexpr const char* Noon = "260714120000";
    static constexpr const char* After = "260714120500";

    // Groups of the colour file; 13 is the code of rain.
    static constexpr int ReflectivityColors = 1;
    static constexpr int VelocityColors = 2;

    ProductInformationTest()
    {
        const std::vector<ColorFile::Band> redToBlue = {{{100, 0, 0}, {0, 0, 250}}, {{0, 0, 250}, {0, 0, 250}}};
        const std::vector<ColorFile::Band> green = {{{0, 200, 0}, {0, 200, 0}}, {{0, 200, 0}, {0, 200, 0}}};
        const std::vector<ColorFile::Band> grey = {{{90, 90, 90}, {180, 180, 180}}, {{180, 180, 180}, {180, 180, 180}}};
        const QByteArray format = "label_format=%3.0f\n";
        colors.scale(1, format + "name=Default\ndata_index=1\n", {"0", "50"}).colors(1, redToBlue);
        colors.scale(2, format + "name=Other\ndata_index=1\n", {"0", "50"}).colors(2, green);
        colors.scale(3, format + "name=Default\ndata_index=2\n", {"-10", "10"}).colors(3, grey);
        colors.mapping({-1, -1, ReflectivityColors, VelocityColors, -1, -1, -1, -1, -1, ReflectivityColors,
                        VelocityColors, -1, -1, -1});
        colors.write();
    }

    ~ProductInformationTest() override { TORVDisplayMode::setNight(false); }

    static TORVProductFields reflectivity() { return volume("HALMERA", Z); }

    static TORVProductFields velocity(int prf)
    {
        TORVProductFields fields = volume("HALMERA", V);
        fields.prf = prf;
        fields.wavelength = 533;
        return fields;
    }

    TORVDataFrame::Ptr frameOf(const char* moment, const QString& configuration) const
    {
        return boost::make_shared<TORVDataFrame>(store, "HALMERA", moment, "CAPPI", configuration, "", 180, 1.5);
    }

    /// Puts the volume on the disk and into the window.
    void give(const TORVProductFields& fields, const char* moment = Noon, const QString& configuration = "Z")
    {
        add3d(moment, fields);
        open();
        show(moment, configuration);
    }

    void show(const char* moment, const QString& configuration = "Z")
    {
        frame = frameOf(moment, configuration);
        ASSERT_TRUE(frame->getData3d());
        window.frame = frame;
    }

    /// The record as the window's own frame has it after it was saved.
    void record(const TORVProductSettings& settings)
    {
        settings.save();
        frame->updateProductSettings();
    }

    TORVProductSettings recordInUse() const { return *frame->getProductSettings(); }

    void recordSurfaces(const QMap<double, int>& surfaces)
    {
        TORVProductSettings settings = recordInUse();
        settings.setRenderingType(TORVProductSettings::SURFACE);
        settings.setSurfaces(surfaces);
        record(settings);
    }

    void giveSurfaces(const QMap<double, int>& surfaces)
    {
        give(reflectivity());
        recordSurfaces(surfaces);
        dialog.updateValues();
    }

    void giveVolume(double low, double opacityLow, double high, double opacityHigh)
    {
        give(reflectivity());
        TORVProductSettings settings = recordInUse();
        settings.setRenderingType(TORVProductSettings::VOLUME);
        settings.setVolumeValueLow(low);
        settings.setVolumeOpacityLow(opacityLow);
        settings.setVolumeValueHigh(high);
        settings.setVolumeOpacityHigh(opacityHigh);
        record(settings);
        dialog.updateValues();
    }

    /// Whether the controls draw the product in another way than its record does.
    bool isEdited() const { return recordInUse().hasChanged(dialog.getProductSettings(), nullptr); }

    /// What the settings file says of the product.
    TORVProductSettings recordOfFile() const
    {
        return {"CAPPI", frame->getConfiguration(), frame->getData3d()->getFile()->getDataType()};
    }

    template <typename Widget>
    Widget* find(const char* name) const
    {
        auto* const widget = dialog.findChild<Widget*>(QLatin1String(name));
        EXPECT_TRUE(widget) << name;
        return widget;
    }

    QString text(const char* label) const { return find<QLabel>(label)->text(); }
    QComboBox* combo(const char* name) const { return find<QComboBox>(name); }
    QPushButton* button(const char* name) const { return find<QPushButton>(name); }
    QDoubleSpinBox* box(const char* name) const { return find<QDoubleSpinBox>(name); }

    // Rows from 1 to 4.
    QCheckBox* check(int row) const
    {
        return find<QCheckBox>(qPrintable(QStringLiteral("surfaceCheckBox%1").arg(row)));
    }
    QDoubleSpinBox* value(int row) const { return box(qPrintable(QStringLiteral("surfaceValueBox%1").arg(row))); }
    QDoubleSpinBox* opacity(int row) const { return box(qPrintable(QStringLiteral("surfaceOpacityBox%1").arg(row))); }
    QPushButton* swatch(int row) const { return button(qPrintable(QStringLiteral("surfaceColorButton%1").arg(row))); }

    /// The sheet of a swatch that shows the colour of that value in a scale of reflectivity.
    static QString painted(const char* scale, double value)
    {
        const TORVColormap colormap(QLatin1String(scale), TORVDataType(Z), TORVColormap::DISPLAY_VALUES);
        const std::array<int, 3> rgb = colormap.getColor(value);
        return QStringLiteral("QPushButton { background-color: rgb(%1, %2, %3); }").arg(rgb[0]).arg(rgb[1]).arg(rgb[2]);
    }

    static constexpr const char* Empty = "QPushButton { background-color: rgb(220,220,220); }";

    ColorFile colors;
    FakeDialogParent window;
    TORVDataFrame::Ptr frame;
    TORVProductInformationDialog dialog{nullptr, &window};
};
