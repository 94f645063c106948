#include "datalib/TORVDirectoryListing.h"

#include <QFile>

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{

struct Closer
{
    void operator()(DIR* directory) const { ::closedir(directory); }
};

bool isRegularFile(int directory, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_REG;
    }
    struct stat state = {}; // some file systems don't tell the type in the listing
    return ::fstatat(directory, entry.d_name, &state, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(state.st_mode);
}

} // namespace

TORVDirectoryListing::Result TORVDirectoryListing::read(const QString& path, std::vector<std::string>& names)
{
    const std::unique_ptr<DIR, Closer> directory(::opendir(QFile::encodeName(path).constData()));
    if (!directory) {
        return errno == ENOENT || errno == ENOTDIR ? NO_DIRECTORY : UNREADABLE;
    }
    std::vector<std::string> found;
    found.reserve(names.size() + 16);
    errno = 0;
    while (const dirent* const entry = ::readdir(directory.get())) {
        if (entry->d_name[0] != '.' && isRegularFile(::dirfd(directory.get()), *entry)) {
            found.emplace_back(entry->d_name);
        }
        errno = 0;
    }
    if (errno != 0) {
        return UNREADABLE;
    }
    names.swap(found);
    return LISTED;
}
