#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

namespace tonequill::DroppedFiles {

// Where sounds that are dragged out of the program are staged.
QString stagingRoot();

// The paths that a drop brings in: local files in their order, without those
// under `stagingRoot`, so that a sound dragged out of the program's own list
// never comes back as a second copy.
QStringList wanted(const QList<QUrl>& urls, const QString& stagingRoot);

} // namespace tonequill::DroppedFiles
