#pragma once

#include <QRegularExpression>
#include <QString>

/**
 * A pattern for names, without regard to case: `*` is any text, `?` any character, `[abc]`, `[a-z]` and `[^a]` one
 * character of a set, or not of it. All else stands for itself, a slash, a backslash and a bracket that opens no set
 * among it. The whole name has to match.
 *
 * Thread: a constant once made, any thread.
 */
class TORVWildcard final
{
public:
    explicit TORVWildcard(const QString& pattern);
    bool matches(const QString& name) const;

    /// The pattern that matches just this name, in any case; "*" alone stays the pattern for all.
    static QString patternFor(const QString& name);

private:
    bool _isAny; // saves the expression's work where a hundred thousand names are matched
    QRegularExpression _expression;
};
