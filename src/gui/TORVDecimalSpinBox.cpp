#include "gui/TORVDecimalSpinBox.h"

#include <QLocale>

TORVDecimalSpinBox::TORVDecimalSpinBox(QWidget* parent) : QDoubleSpinBox(parent)
{
    setLocale(QLocale::c());
}

QValidator::State TORVDecimalSpinBox::validate(QString& text, int& position) const
{
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    return QDoubleSpinBox::validate(text, position);
}
