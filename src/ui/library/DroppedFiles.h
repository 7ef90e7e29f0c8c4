#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

namespace tonequill::DroppedFiles {

// The paths that a drop brings in: local files in their order, without those
// that were dragged out of the program's own list, so that none of its sounds
// ever comes back as a second copy.
QStringList wanted(const QList<QUrl>& urls);

// True if one of them at least was dragged out of the program's own list: nothing
// lights up for such a drag.
bool comeFromApp(const QList<QUrl>& urls);

} // namespace tonequill::DroppedFiles
