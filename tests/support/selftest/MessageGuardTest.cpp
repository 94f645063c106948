#include "support/MessageGuard.h"

#include <QDebug>

#include <gtest/gtest.h>

#include <vtkObject.h>
#include <vtkOutputWindow.h>

TEST(MessageGuard, LetsAnAnnouncedQtWarningPass)
{
    MessageGuard::expect(QStringLiteral("the answer"));
    qWarning("the answer is 42");
}

TEST(MessageGuard, LetsAnAnnouncedVtkErrorPass)
{
    MessageGuard::expect(QStringLiteral("a broken pipeline"));
    vtkGenericWarningMacro("a broken pipeline");
}

TEST(MessageGuard, LetsDebugMessagesPass)
{
    qDebug("nothing to worry about");
}

// The other half can only be seen from outside: these fail, and ctest expects them to.
TEST(MessageGuardMustFail, OnAQtWarning)
{
    qWarning("nobody announced this");
}

TEST(MessageGuardMustFail, OnAVtkError)
{
    vtkOutputWindowDisplayErrorText("nobody announced this\n");
}

TEST(MessageGuardMustFail, WhenAnAnnouncedMessageDoesNotCome)
{
    MessageGuard::expect(QStringLiteral("never said"));
}
