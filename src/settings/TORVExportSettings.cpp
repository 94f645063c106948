#include "settings/TORVExportSettings.h"

#include "settings/TORVConfig.h"
#include "settings/TORVSettingsField.h"

namespace
{

const QString Group = QStringLiteral("EXPORT");

} // namespace

struct TORVExportSettings::Row
{
    TORVSettingsField<Values> field;
    bool isReset;
};

const std::vector<TORVExportSettings::Row>& TORVExportSettings::rows()
{
    using F = TORVSettingsField<Values>;
    using V = Values;
    static const std::vector<Row> table = {
        {F::flag("colorbar", &V::colorBar, true), true},
        {F::flag("legend", &V::legend, true), true},
        {F::flag("compass", &V::compass, true), true},
        {F::choice("outputformat", &V::outputFormat, FORMAT_TIFF, formatNames()), true},
        {F::text("outputpath", &V::path, "."), false},
        {F::integer("height", &V::height, 0, 0, MaxSide), true},
        {F::integer("width", &V::width, 0, 0, MaxSide), true},
    };
    return table;
}

TORVExportSettings::TORVExportSettings()
{
    for (const Row& row : rows()) {
        row.field.reset(_values);
    }
    _stored = _values;
}

void TORVExportSettings::load()
{
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(Group);
    for (const Row& row : rows()) {
        row.field.read(settings.value(row.field.key()), _values);
    }
    settings.endGroup();
    TORVConfig::instance()->release();
    _stored = _values;
}

void TORVExportSettings::save() const
{
    saveRecord(Group, rows(), _values, _stored);
}

void TORVExportSettings::reset()
{
    for (const Row& row : rows()) {
        if (row.isReset) {
            row.field.reset(_values);
        }
    }
}

const TORVNamedValues<TORVExportSettings::OutputFormat>& TORVExportSettings::formatNames()
{
    static const TORVNamedValues<OutputFormat> names(
        {{FORMAT_TIFF, "TIFF"}, {FORMAT_PNG, "PNG"}, {FORMAT_JPEG, "JPEG"}}, FORMAT_UNKNOWN, "unknown");
    return names;
}

QString TORVExportSettings::getOutputFileExtension(OutputFormat format)
{
    static const TORVNamedValues<OutputFormat> extensions(
        {{FORMAT_TIFF, "tiff"}, {FORMAT_PNG, "png"}, {FORMAT_JPEG, "jpg"}}, FORMAT_UNKNOWN, "tiff");
    return extensions.text(format);
}

QStringList TORVExportSettings::getSupportedOutputFormats()
{
    QStringList texts;
    for (const OutputFormat format : {FORMAT_TIFF, FORMAT_PNG, FORMAT_JPEG}) {
        texts << getOutputFormatString(format);
    }
    return texts;
}

QStringList TORVExportSettings::getImageSizePresets()
{
    return {QStringLiteral("1900x1200"), QStringLiteral("1600x1200"), QStringLiteral("1280x768"),
            QStringLiteral("1024x768")};
}

QString TORVExportSettings::getDefaultOutputFormatString()
{
    return TORVConfig::VALUE_DEFAULT;
}
