#pragma once

#include <QString>

/**
 * A product and its configuration as one text, "CAPPI - Z", as lists and settings have it.
 *
 * Thread: a plain value, any thread.
 */
struct TORVProductKey
{
    QString name;
    QString configuration;

    /// Both empty where the text is of another form.
    static TORVProductKey fromText(const QString& text);

    QString text() const;
};
