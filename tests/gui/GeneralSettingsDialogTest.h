#pragma once

#include "gui/FakeDialogParent.h"
#include "gui/TORVDirectoryEdit.h"
#include "gui/TORVDiskSpaceIndicator.h"
#include "gui/TORVGeneralSettingsDialog.h"
#include "settings/TORVGeneralSettings.h"
#include "support/SandboxedHome.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QtTest>

#include <gtest/gtest.h>

/// The window of the general settings, hidden as yet, for a user without a settings file.
class GeneralSettingsDialogTest : public testing::Test
{
protected:
    static constexpr int Patience_ms = 60000;

    // Windows that go while the display still gives them the focus make it complain.
    void open()
    {
        dialog.showDialog();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog, Patience_ms));
    }

    template <typename Widget>
    Widget& control(const char* name) const
    {
        auto* const widget = dialog.findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }

    void press(const char* button) const { control<QPushButton>(button).click(); }
    TORVDirectoryEdit& edit(const char* name) const { return control<TORVDirectoryEdit>(name); }

    void type(TORVDirectoryEdit& line, const QString& text) const
    {
        line.setFocus();
        line.selectAll();
        QTest::keyClicks(&line, text);
    }

    bool isMarked(const TORVDirectoryEdit& line) const
    {
        return QTest::qWaitFor([&] { return line.isInvalid(); }, Patience_ms);
    }

    QString makeDirectory(const QString& name) const
    {
        EXPECT_TRUE(QDir(home.path()).mkpath(name));
        return home.filePath(name);
    }

    bool isBarOf(const QString& path) const
    {
        QLabel& label = control<QLabel>("label_diskSpaceValue");
        return QTest::qWaitFor([&] { return label.toolTip() == path; }, Patience_ms);
    }

    const SandboxedHome home;
    FakeDialogParent window;
    TORVGeneralSettingsDialog dialog{nullptr, &window};
};
