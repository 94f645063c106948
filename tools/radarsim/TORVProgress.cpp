#include "radarsim/TORVProgress.h"

void TORVProgress::begin(const QString& what, int total)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _what = what;
    _total = total;
    _done = 0;
    _toldTenths = 0;
}

void TORVProgress::advance()
{
    const std::lock_guard<std::mutex> lock(_mutex);
    ++_done;
    show();
}

void TORVProgress::say(const QString& line)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    print(line, "\n");
}

void TORVProgress::show()
{
    const bool isLast = _done == _total;
    const QString text = QStringLiteral("%1: %2 of %3").arg(_what).arg(_done).arg(_total);
    if (_isTerminal) {
        print(QLatin1Char('\r') + text, isLast ? "\n" : "");
        return;
    }
    const int tenths = _total > 0 ? static_cast<int>(10LL * _done / _total) : 0;
    if (tenths > _toldTenths || isLast) {
        _toldTenths = tenths;
        print(text, "\n");
    }
}

void TORVProgress::print(const QString& text, const char* end)
{
    std::fprintf(_stream, "%s%s", qPrintable(text), end);
    std::fflush(_stream);
}
