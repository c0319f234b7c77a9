#include "regularFile_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorbin_qt_gui {

int openRegularFile(const std::string& fileName)
{
    const int descriptor = open(fileName.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor == -1)
        return -1;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

} // namespace zorbin_qt_gui
