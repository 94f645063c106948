#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QHeaderView>
#include <QLineEdit>
#include <QtTest>

#include <gtest/gtest.h>

/// Whether everything that a user of a dialog can operate says what it is and what it does.
inline void expectControlsNamed(const QWidget& dialog)
{
    for (const QWidget* const widget : dialog.findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<const QAbstractButton*>(widget) ||
                               qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QLineEdit*>(widget);
        if (isControl && !qobject_cast<const QHeaderView*>(widget)) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << qUtf8Printable(widget->objectName());
            EXPECT_FALSE(widget->toolTip().isEmpty()) << qUtf8Printable(widget->objectName());
        }
    }
}
