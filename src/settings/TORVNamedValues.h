#pragma once

#include <QString>

#include <algorithm>
#include <initializer_list>
#include <vector>

/**
 * The texts that stand for the values of an enumeration in a settings file, both ways.
 *
 * Thread: immutable, any thread.
 */
template <typename Enum>
class TORVNamedValues final
{
public:
    struct Name
    {
        Enum value;
        const char* text; ///< ASCII
    };

    /// `otherValue` is read from any text, `otherText` written for any value that isn't in the list.
    TORVNamedValues(std::initializer_list<Name> names, Enum otherValue, const char* otherText)
        : _names(names), _otherValue(otherValue), _otherText(otherText)
    {
    }

    QString text(Enum value) const
    {
        const auto name = std::find_if(_names.cbegin(), _names.cend(),
                                       [value](const Name& candidate) { return candidate.value == value; });
        return QString::fromLatin1(name == _names.cend() ? _otherText : name->text);
    }

    Enum value(const QString& text) const
    {
        const auto name = std::find_if(_names.cbegin(), _names.cend(), [&text](const Name& candidate) {
            return text == QLatin1String(candidate.text);
        });
        return name == _names.cend() ? _otherValue : name->value;
    }

private:
    std::vector<Name> _names;
    Enum _otherValue;
    const char* _otherText;
};
