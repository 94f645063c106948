#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QString>

/**
 * A drawing that icons are made of: SVG on a grid of 24 units, in one colour variable, "currentColor". Classes in it
 * say what differs between the forms of an icon: "tone" shapes are filled lightly in the selected form, "alert" shapes
 * have a colour of their own, and of the groups "plain" and "selected" one is shown.
 *
 * Thread: any thread.
 */
class TORVIconSource final
{
public:
    struct Form
    {
        QColor color;
        QColor alert;
        bool isSelected = false;
    };

    explicit TORVIconSource(const QString& fileName);

    /// Empty where the file could be read and is a drawing.
    QString getError() const { return _error; }

    bool hasColorVariable() const;

    /// A square picture, `size` pixels wide.
    QImage render(const Form& form, int size) const;

private:
    QByteArray inForm(const Form& form) const;

    QByteArray _svg;
    QString _error;
};
