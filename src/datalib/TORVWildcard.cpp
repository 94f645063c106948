#include "datalib/TORVWildcard.h"

namespace
{

const QString Any = QStringLiteral("*");

// Where the set that opens at `begin` closes, or -1. Its first member may be a closing bracket.
int setEnd(const QString& wildcard, int begin)
{
    const bool isNegated = wildcard.midRef(begin + 1, 1) == QLatin1String("^");
    return wildcard.indexOf(QLatin1Char(']'), begin + (isNegated ? 3 : 2));
}

QString setExpression(const QString& members)
{
    const bool isNegated = members.startsWith(QLatin1Char('^'));
    QString text = isNegated ? QStringLiteral("[^") : QStringLiteral("[");
    for (const QChar member : members.midRef(isNegated ? 1 : 0)) {
        text += member == QLatin1Char('-') ? QString(member) : QRegularExpression::escape(member);
    }
    return text + QLatin1Char(']');
}

QString characterExpression(QChar character)
{
    if (character == QLatin1Char('*')) {
        return QStringLiteral(".*");
    }
    return character == QLatin1Char('?') ? QStringLiteral(".") : QRegularExpression::escape(character);
}

// Qt's own conversion is for paths: its `*` and `?` stop at a slash, which a site's name may hold.
QString wildcardExpression(const QString& wildcard)
{
    QString text;
    for (int i = 0; i < wildcard.size(); ++i) {
        const int end = wildcard[i] == QLatin1Char('[') ? setEnd(wildcard, i) : -1;
        if (end < 0) {
            text += characterExpression(wildcard[i]);
            continue;
        }
        text += setExpression(wildcard.mid(i + 1, end - i - 1));
        i = end;
    }
    return QRegularExpression::anchoredPattern(text);
}

} // namespace

TORVWildcard::TORVWildcard(const QString& pattern) : _isAny(pattern == Any)
{
    if (!_isAny) {
        _expression =
            QRegularExpression(wildcardExpression(pattern), QRegularExpression::CaseInsensitiveOption |
                                                                QRegularExpression::DotMatchesEverythingOption);
    }
}

bool TORVWildcard::matches(const QString& name) const
{
    return _isAny || (_expression.isValid() && _expression.match(name).hasMatch());
}

QString TORVWildcard::patternFor(const QString& name)
{
    static const QRegularExpression special(QStringLiteral("([[*?])"));
    return name == Any ? name : QString(name).replace(special, QStringLiteral("[\\1]"));
}
