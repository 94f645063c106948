#pragma once

#include <QString>

#include <string>
#include <vector>

/**
 * The names of the regular files in a directory: no directories, no symbolic links, no special files, nothing hidden.
 *
 * The names are the file system's own bytes (`QFile::decodeName` makes texts of them), in the order in which the system
 * gives them: with a hundred thousand files, sorting and decoding would cost more than reading.
 *
 * Thread: any thread.
 */
class TORVDirectoryListing final
{
public:
    TORVDirectoryListing() = delete;

    enum Result
    {
        LISTED,
        NO_DIRECTORY, ///< there is none of that name
        UNREADABLE    ///< it is there, but it can't be read, or not to its end
    };

    /// `names` is changed only where the result is LISTED.
    static Result read(const QString& path, std::vector<std::string>& names);
};
