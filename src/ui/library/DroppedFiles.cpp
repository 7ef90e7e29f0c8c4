#include "ui/library/DroppedFiles.h"

#include "library/delivery/DragStaging.h"

#include <QDir>

#include <algorithm>

namespace tonequill {

namespace {

bool comesFromApp(const QUrl& url)
{
    return url.isLocalFile() && DragStaging::holds(url.toLocalFile());
}

} // namespace

QStringList DroppedFiles::wanted(const QList<QUrl>& urls)
{
    QStringList paths;
    for (const QUrl& url : urls) {
        if (url.isLocalFile() && !comesFromApp(url))
            paths << QDir::cleanPath(url.toLocalFile());
    }
    return paths;
}

bool DroppedFiles::comeFromApp(const QList<QUrl>& urls)
{
    return std::any_of(urls.begin(), urls.end(), comesFromApp);
}

} // namespace tonequill
