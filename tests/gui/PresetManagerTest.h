#pragma once

#include "FakeDialogParent.h"
#include "settings/TORVConfig.h"
#include "support/LogFile.h"
#include "support/SandboxedHome.h"

#include <QTranslator>

#include <gtest/gtest.h>

/// A window with presets "Cells" and "Ground" of both kinds, which are also in the settings file. Thread: test's
/// thread.
class PresetManagerTest : public testing::Test
{
protected:
    /// Answers one word for another.
    class Translator final : public QTranslator
    {
    public:
        Translator(const char* context, const char* source, QString translation)
            : _context(context), _source(source), _translation(std::move(translation))
        {
            QCoreApplication::installTranslator(this);
        }
        ~Translator() override { QCoreApplication::removeTranslator(this); }

        bool isEmpty() const override { return false; }
        QString translate(const char* context, const char* source, const char* /*disambiguation*/,
                          int /*n*/) const override
        {
            return _context == context && _source == source ? _translation : QString();
        }

    private:
        const QByteArray _context;
        const QByteArray _source;
        const QString _translation;
    };

    PresetManagerTest()
    {
        window.settings->setDisplayStates({displayState("Cells", 10), displayState("Ground", 20)});
        window.settings->saveDisplayStates(window.state);
        window.settings->setViewAngles({viewAngle("Cells", 10.0), viewAngle("Ground", 20.0)});
        window.settings->saveViewAngles(window.angle);
    }

    ~PresetManagerTest() override { TORVConfig::destroy(); }

    static TORVDisplayState::Ptr displayState(const char* name, int opacity)
    {
        auto state = boost::make_shared<TORVDisplayState>();
        state->setName(QLatin1String(name));
        setOpacity(*state, opacity);
        return state;
    }

    static void setOpacity(TORVDisplayState& state, int opacity)
    {
        state.getLayer(TORVDisplayLayer::LAYER_3DTERRAIN)->setOpacity(opacity);
    }

    static int opacityOf(const TORVDisplayState& state)
    {
        return state.getLayer(TORVDisplayLayer::LAYER_3DTERRAIN)->getOpacity();
    }

    static TORVViewAngle::Ptr viewAngle(const char* name, double x)
    {
        return boost::make_shared<TORVViewAngle>(QLatin1String(name), TORVPoint3D{x, 2.0, 3000.0},
                                                 TORVPoint3D{0.5, 0.25, -0.75});
    }

    /// What another viewer finds in the file.
    static TORVGeneralSettings inFile()
    {
        TORVGeneralSettings settings;
        settings.loadDisplayStates(boost::make_shared<TORVDisplayState>());
        settings.loadViewAngles(boost::make_shared<TORVViewAngle>());
        return settings;
    }

    SandboxedHome home;
    FakeDialogParent window;
};
