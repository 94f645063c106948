#pragma once

#include "settings/TORVConfig.h"
#include "settings/TORVNamedValues.h"
#include "utils/TORVSettingsReader.h"

#include <QSettings>
#include <QVariant>

#include <functional>
#include <utility>

/**
 * One value of a record and its place in a settings file. A class that persists a record has one table of these; all
 * that it does with the record (load, save, reset, compare) runs along the table.
 *
 * Keys that stand in objects of other files must exist when a table is made: tables are made at first use.
 *
 * Thread: immutable, any thread; records and settings belong to the caller.
 */
template <typename Record>
class TORVSettingsField final
{
public:
    static TORVSettingsField flag(const QString& key, bool Record::*member, bool byDefault)
    {
        return make(key, member, byDefault, &TORVSettingsReader::flag, [](bool value) { return QVariant(value); });
    }

    static TORVSettingsField text(const QString& key, QString Record::*member, const QString& byDefault)
    {
        return make(key, member, byDefault, &TORVSettingsReader::text,
                    [](const QString& value) { return QVariant(value); });
    }

    static TORVSettingsField integer(const QString& key, int Record::*member, int byDefault, int min, int max)
    {
        const auto read = [min, max](const QVariant& value, int fallback) {
            return TORVSettingsReader::integer(value, fallback, min, max);
        };
        return make(key, member, byDefault, read, [](int value) { return QVariant(value); });
    }

    static TORVSettingsField real(const QString& key, double Record::*member, double byDefault, double min, double max)
    {
        const auto read = [min, max](const QVariant& value, double fallback) {
            return TORVSettingsReader::real(value, fallback, min, max);
        };
        return make(key, member, byDefault, read, [](double value) { return QVariant(value); });
    }

    template <typename Enum>
    static TORVSettingsField choice(const QString& key, Enum Record::*member, Enum byDefault,
                                    const TORVNamedValues<Enum>& names)
    {
        const auto read = [names](const QVariant& value, Enum fallback) {
            return names.value(TORVSettingsReader::text(value, names.text(fallback)));
        };
        return make(key, member, byDefault, read, [names](Enum value) { return QVariant(names.text(value)); });
    }

    const QString& key() const { return _key; }
    void reset(Record& record) const { _read(QVariant(), record); }

    /// The default for an invalid value and for one that can't be meant.
    void read(const QVariant& value, Record& record) const { _read(value, record); }

    /// A number that is not a number differs from everything.
    bool differs(const Record& one, const Record& other) const { return _differs(one, other); }

    /// Writes what the settings lack and what is other than in `stored`, the record as it was read from them: what
    /// another process has written meanwhile, and what this version doesn't understand, stays.
    void save(QSettings& settings, const Record& record, const Record& stored) const
    {
        if (differs(record, stored) || !settings.contains(_key)) {
            settings.setValue(_key, _write(record));
        }
    }

private:
    TORVSettingsField() = default;

    template <typename Value, typename Read, typename Write>
    static TORVSettingsField make(const QString& key, Value Record::*member, const Value& byDefault, const Read& read,
                                  const Write& write)
    {
        TORVSettingsField field;
        field._key = key;
        field._read = [member, byDefault, read](const QVariant& value, Record& record) {
            record.*member = read(value, byDefault);
        };
        field._write = [member, write](const Record& record) { return write(record.*member); };
        field._differs = [member](const Record& one, const Record& other) { return !(one.*member == other.*member); };
        return field;
    }

    QString _key;
    std::function<void(const QVariant&, Record&)> _read;
    std::function<QVariant(const Record&)> _write;
    std::function<bool(const Record&, const Record&)> _differs;
};

/**
 * Writes what of a record differs from `stored`, or isn't there yet, to a group of the user's own settings. What could
 * not be written is tried again next time: `stored` follows only where all went well.
 *
 * Thread: any that holds no settings.
 * @param rows  a table whose rows have a `field`
 */
template <typename Rows, typename Record>
void saveRecord(const QString& group, const Rows& rows, const Record& values, Record& stored)
{
    QSettings& settings = *TORVConfig::instance()->get();
    settings.setFallbacksEnabled(false);
    settings.beginGroup(group);
    for (const auto& row : rows) {
        row.field.save(settings, values, stored);
    }
    settings.endGroup();
    settings.sync();
    const bool isSaved = settings.status() == QSettings::NoError;
    TORVConfig::instance()->release();
    if (isSaved) {
        stored = values;
    }
}
