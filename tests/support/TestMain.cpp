#include "support/MessageGuard.h"
#include "support/SandboxedHome.h"
#include "support/VirtualDisplay.h"

#include <QApplication>

#include <gmock/gmock.h>

#ifdef TORV_TEST_MAIN_draw
#include <QSurfaceFormat>
#include <QVTKOpenGLNativeWidget.h>

#include <iostream>
#endif

namespace
{

bool isListing()
{
    return testing::GTEST_FLAG(list_tests);
}

} // namespace

int main(int argc, char* argv[])
{
    testing::InitGoogleMock(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    if (isListing()) {
        return RUN_ALL_TESTS();
    }
    MessageGuard::install();
    QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
    QCoreApplication::setApplicationName(QStringLiteral("TORV3D"));
    const SandboxedHome home; // whatever a test forgets, the user's own settings stay untouched
#if defined(TORV_TEST_MAIN_draw)
    const VirtualDisplay display;
    if (!display.isThere()) {
        std::cerr << "These tests draw: they need an X display, or Xvfb to start one.\n";
        return 1;
    }
    QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
    const QApplication application(argc, argv);
#elif defined(TORV_TEST_MAIN_app)
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QApplication application(argc, argv);
#endif
    return RUN_ALL_TESTS();
}
