#pragma once

#include <QByteArray>
#include <QString>

namespace sendrel {

// Writes bytes to path as a whole: under a name of its own beside it, then moved into place, so
// that a reader never sees half a file and a failure leaves the file that was there as it was.
// Every write, the flush and the close are checked; a failure names the file and the cause
// ("Cannot write PATH: CAUSE"): ErrNo::PathFileAccess when it cannot be opened or an existing
// file may not be written, ErrNo::DeviceIO when a write, the flush, the close or the move fails.
// A file replaced keeps its permissions, a new one gets those of any new file.
void SaveWholeFile(const QString &path, const QByteArray &bytes, const QString &source);

}  // namespace sendrel
