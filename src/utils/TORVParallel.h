#pragma once

#include <functional>

/**
 * A loop whose rounds the machine's cores share.
 *
 * Thread: any thread, also several at once; each call has threads of its own.
 */
class TORVParallel final
{
public:
    TORVParallel() = delete;

    /**
     * Calls `work` once for each of 0 to `count` - 1, in no particular order, on the calling thread and as many others
     * as there are further cores; returns when all are done. Rounds must not write to the same place, and must not
     * throw. Where the system gives no thread, the others do its share.
     */
    static void forEach(int count, const std::function<void(int index)>& work);
};
