#include "ui/DroppedFiles.h"

#include "library/DragStaging.h"

#include <QDir>

namespace tonequill {

QStringList DroppedFiles::wanted(const QList<QUrl>& urls)
{
    QStringList paths;
    for (const QUrl& url : urls) {
        if (url.isLocalFile() && !DragStaging::holds(url.toLocalFile()))
            paths << QDir::cleanPath(url.toLocalFile());
    }
    return paths;
}

} // namespace tonequill
