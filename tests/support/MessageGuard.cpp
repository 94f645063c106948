#include "support/MessageGuard.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <vtkObjectFactory.h>
#include <vtkOutputWindow.h>
#include <vtkSmartPointer.h>

#include <cstdio>
#include <mutex>
#include <vector>

namespace
{

struct Announcement
{
    QString part;
    bool mustCome = false;
    bool came = false;
};

std::mutex guard;
std::vector<Announcement> announced; // guarded by guard
QStringList unexpected;              // guarded by guard

void note(const QString& text)
{
    const std::lock_guard<std::mutex> lock(guard);
    for (Announcement& entry : announced) {
        if (text.contains(entry.part)) {
            entry.came = true;
            return;
        }
    }
    unexpected << text;
}

void qtMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    if (type != QtDebugMsg && type != QtInfoMsg) {
        note(text);
    }
}

class OutputWindow final : public vtkOutputWindow
{
public:
    static OutputWindow* New();

    vtkTypeMacro(OutputWindow, vtkOutputWindow)

        void DisplayText(const char* text) override
    {
        std::fprintf(stderr, "%s", text);
        const MessageTypes type = GetCurrentMessageType();
        if (type == MESSAGE_TYPE_ERROR || type == MESSAGE_TYPE_WARNING || type == MESSAGE_TYPE_GENERIC_WARNING) {
            note(QString::fromLocal8Bit(text));
        }
    }
};

vtkStandardNewMacro(OutputWindow)

    class Listener final : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override
    {
        const std::lock_guard<std::mutex> lock(guard);
        announced.clear();
        unexpected.clear();
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        const std::lock_guard<std::mutex> lock(guard);
        for (const QString& text : std::as_const(unexpected)) {
            ADD_FAILURE() << "unexpected message: " << qUtf8Printable(text);
        }
        for (const Announcement& entry : announced) {
            EXPECT_TRUE(entry.came || !entry.mustCome) << "no message with: " << qUtf8Printable(entry.part);
        }
    }
};

} // namespace

void MessageGuard::install()
{
    qInstallMessageHandler(qtMessage);
    const auto window = vtkSmartPointer<OutputWindow>::New();
    vtkOutputWindow::SetInstance(window);
    // Google Test owns its listeners. The first in the list hears of the end of a test last, when the printer has
    // spoken already; so this one goes behind the printer and hears of it first.
    testing::UnitTest::GetInstance()->listeners().Append(new Listener);
}

void MessageGuard::expect(const QString& part)
{
    const std::lock_guard<std::mutex> lock(guard);
    announced.push_back({part, true});
}

void MessageGuard::allow(const QString& part)
{
    const std::lock_guard<std::mutex> lock(guard);
    announced.push_back({part, false});
}
