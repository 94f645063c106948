#pragma once

#include <QDoubleSpinBox>

/**
 * A spin box for a number with decimals. It shows a decimal point, as all numbers of the program have one, and takes a
 * comma for one: refused or read as a separator of thousands, "2,5" would become 25.
 *
 * Thread: main thread only.
 */
class TORVDecimalSpinBox final : public QDoubleSpinBox
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDecimalSpinBox)

public:
    explicit TORVDecimalSpinBox(QWidget* parent = nullptr);

    QValidator::State validate(QString& text, int& position) const override;
};
