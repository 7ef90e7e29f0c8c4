#include "ui/DroppedFiles.h"

#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tonequill {

QString DroppedFiles::stagingRoot()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/Tonequill/Drag"_s;
}

QStringList DroppedFiles::wanted(const QList<QUrl>& urls, const QString& stagingRoot)
{
    const QString root = QDir::cleanPath(stagingRoot) + u'/';
    QStringList paths;
    for (const QUrl& url : urls) {
        if (!url.isLocalFile())
            continue;
        const QString path = QDir::cleanPath(url.toLocalFile());
        if (!path.startsWith(root))
            paths << path;
    }
    return paths;
}

} // namespace tonequill
