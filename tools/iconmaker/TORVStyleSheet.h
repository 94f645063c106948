#pragma once

#include <QString>
#include <QStringList>

class TORVPalette;

/**
 * The one source of the style sheets. "@name" in it stands for a colour of the palette, "@mode" for the word of the
 * mode, "day" or "night".
 *
 * Thread: any thread.
 */
class TORVStyleSheet final
{
public:
    /// The text may hold Latin-1 only; `getErrors` names what stands in the way.
    explicit TORVStyleSheet(const QString& fileName);

    /// Names that the palette lacks are left as they stand and join the errors.
    QString expanded(const TORVPalette& palette, bool night);

    QStringList getErrors() const { return _errors; }

private:
    QString _source;
    QStringList _errors;
};
