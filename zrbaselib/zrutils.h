#ifndef ZRUTILS_H
#define ZRUTILS_H

#include <zrbaselib/zrbaselib_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ZR {

/// Small helpers that need no object. They keep no state and may run on any number of threads at once.
class ZRBASELIB_EXPORT ZRUtils
{
public:
    /// Reads the whole file into data. Returns false, with data undefined, when the file cannot be opened or
    /// read to its end, or when there is not enough memory for it.
    ///
    /// A file may be a pipe or a device, as long as it ends: a character device, as a terminal is one, has to
    /// end within 1 MiB, so that one without an end is refused at once, and a pipe within 2 GiB.
    static bool readFile(const QString &path, QByteArray &data);
};

} // namespace ZR

#endif
