#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class QSettings;

/**
 * A list of named presets in the user's settings: an array in a group of its own. Its entry 0 is no preset but the
 * state at exit.
 *
 * Keys of an entry that are not among those of the list (another version's) stay with the name of their entry however
 * the list is rearranged.
 *
 * Thread: any thread; each call borrows the settings, so the caller must not hold them.
 */
class TORVPresetArray final
{
public:
    using Entry = QMap<QString, QVariant>; ///< by key

    TORVPresetArray(QString group, QString array, QString nameKey, const QStringList& otherKeys);

    /// Of each entry what the file has of the keys; empty where there is no array.
    QVector<Entry> read() const;

    /// In place of what is there.
    void write(const QVector<Entry>& entries) const;

    /// Entry 0 alone.
    void writeFirst(const Entry& entry) const;

    const QString& nameKey() const { return _nameKey; }

private:
    QMap<QString, Entry> takeUnknownValues(QSettings& settings) const;
    Entry unknownValues(const QSettings& settings) const;
    void writeEntry(QSettings& settings, const Entry& entry) const;

    QString _group;
    QString _array;
    QString _nameKey;
    QStringList _keys; // with that of the name
};
