#include "support/VirtualDisplay.h"

#include <QByteArray>

#include <array>
#include <csignal>
#include <cstdio>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

// Xvfb writes the number of the display that it chose, and a line end, once it takes clients.
QByteArray readLine(int fd)
{
    QByteArray line;
    char c = 0;
    while (::read(fd, &c, 1) == 1 && c != '\n') {
        line.append(c);
    }
    return line;
}

} // namespace

VirtualDisplay::VirtualDisplay()
{
    if (!isThere()) {
        start();
    }
}

VirtualDisplay::~VirtualDisplay()
{
    if (_pid > 0) {
        ::kill(_pid, SIGTERM);
        ::waitpid(_pid, nullptr, 0);
    }
}

bool VirtualDisplay::isThere() const
{
    return !qEnvironmentVariableIsEmpty("DISPLAY");
}

void VirtualDisplay::start()
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return;
    }
    const QByteArray number = QByteArray::number(ends[1]);
    const std::array<const char*, 10> arguments = {"Xvfb",     "-displayfd",   number.constData(), "-screen",
                                                   "0",        "1920x1200x24", "-nolisten",        "tcp",
                                                   "-noreset", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    pid_t pid = 0;
    const int failed =
        posix_spawnp(&pid, arguments[0], &actions, nullptr, const_cast<char**>(arguments.data()), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (failed == 0) {
        _pid = pid;
        const QByteArray display = readLine(ends[0]);
        if (!display.isEmpty()) {
            qputenv("DISPLAY", ':' + display);
        }
    }
    ::close(ends[0]);
}
