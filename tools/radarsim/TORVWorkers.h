#pragma once

#include <QString>

#include <functional>

/**
 * Shares numbered jobs between threads.
 *
 * Thread: the caller's; `run` returns when all threads have ended.
 */
class TORVWorkers final
{
public:
    /// A job answers an empty text, or in words why all work should stop.
    using Job = std::function<QString(int number)>;

    /// 0 stands for the number of cores.
    explicit TORVWorkers(int threads);

    int threads() const { return _threads; }

    /// Does jobs 0 to count-1 in any order. After the first failure no new job begins.
    /// @return the first failure's words, or an empty text.
    QString run(int count, const Job& job) const;

private:
    int _threads;
};
