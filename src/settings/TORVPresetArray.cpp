#include "settings/TORVPresetArray.h"

#include "settings/TORVConfig.h"
#include "utils/TORVSettingsReader.h"

#include <QSettings>

#include <algorithm>
#include <utility>

namespace
{

// No preset can take it: a name is what a user can type.
const QString FirstEntry = QStringLiteral("\n");

} // namespace

TORVPresetArray::TORVPresetArray(QString group, QString array, QString nameKey, const QStringList& otherKeys)
    : _group(std::move(group)), _array(std::move(array)), _nameKey(std::move(nameKey)),
      _keys(QStringList(_nameKey) + otherKeys)
{
}

QVector<TORVPresetArray::Entry> TORVPresetArray::read() const
{
    QVector<Entry> entries;
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(_group);
    const int size = settings.beginReadArray(_array);
    QVector<int> indexes = TORVSettingsReader::arrayIndexes(settings, size);
    if (!indexes.isEmpty() && indexes.first() != 0) {
        indexes.prepend(0);
    }
    for (const int index : std::as_const(indexes)) {
        settings.setArrayIndex(index);
        Entry entry;
        for (const QString& key : _keys) {
            entry.insert(key, settings.value(key));
        }
        entries.append(entry);
    }
    settings.endArray();
    settings.endGroup();
    TORVConfig::instance()->release();
    return entries;
}

void TORVPresetArray::write(const QVector<Entry>& entries) const
{
    QSettings& settings = *TORVConfig::instance()->get();
    settings.setFallbacksEnabled(false);
    settings.beginGroup(_group);
    const QMap<QString, Entry> unknown = takeUnknownValues(settings);
    settings.beginWriteArray(_array, entries.size());
    for (int i = 0; i < entries.size(); ++i) {
        settings.setArrayIndex(i);
        writeEntry(settings, unknown.value(i == 0 ? FirstEntry : entries[i].value(_nameKey).toString()));
        writeEntry(settings, entries[i]);
    }
    settings.endArray();
    settings.endGroup();
    TORVConfig::instance()->release();
}

void TORVPresetArray::writeFirst(const Entry& entry) const
{
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(_group);
    const int size = settings.beginReadArray(_array);
    settings.endArray();
    settings.beginWriteArray(_array, std::max(size, 1));
    settings.setArrayIndex(0);
    writeEntry(settings, entry);
    settings.endArray();
    settings.endGroup();
    TORVConfig::instance()->release();
}

// Empties the array; the answer is by name of the entry.
QMap<QString, TORVPresetArray::Entry> TORVPresetArray::takeUnknownValues(QSettings& settings) const
{
    QMap<QString, Entry> unknown;
    settings.beginGroup(_array);
    const QStringList numbers = settings.childGroups();
    for (const QString& number : numbers) {
        if (number.toInt() < 1) {
            continue;
        }
        settings.beginGroup(number);
        const Entry values = unknownValues(settings);
        const QString name = number.toInt() == 1 ? FirstEntry : TORVSettingsReader::text(settings.value(_nameKey), {});
        if (!values.isEmpty()) {
            unknown.insert(name, values);
        }
        settings.endGroup();
        settings.remove(number);
    }
    settings.endGroup();
    return unknown;
}

TORVPresetArray::Entry TORVPresetArray::unknownValues(const QSettings& settings) const
{
    Entry values;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys) {
        if (!key.isEmpty() && !_keys.contains(key)) {
            values.insert(key, settings.value(key));
        }
    }
    return values;
}

void TORVPresetArray::writeEntry(QSettings& settings, const Entry& entry) const
{
    for (auto value = entry.cbegin(); value != entry.cend(); ++value) {
        settings.setValue(value.key(), value.value());
    }
}
