#pragma once

#include <QString>

#include <cstdio>
#include <mutex>

/**
 * Tells how far the work is: one line that renews itself on a terminal, otherwise a plain line for each tenth.
 *
 * Thread: any thread.
 */
class TORVProgress final
{
public:
    /// `stream` isn't owned.
    TORVProgress(std::FILE* stream, bool isTerminal) : _stream(stream), _isTerminal(isTerminal) {}

    /// Begins a part of the work with `total` steps.
    void begin(const QString& what, int total);

    /// One more step of it is done.
    void advance();

    /// A line of its own.
    void say(const QString& line);

private:
    void show(); // under _mutex
    void print(const QString& text, const char* end);

    std::FILE* _stream;
    bool _isTerminal;
    std::mutex _mutex;
    QString _what;       // guarded by _mutex
    int _total = 0;      // guarded by _mutex
    int _done = 0;       // guarded by _mutex
    int _toldTenths = 0; // guarded by _mutex
};
