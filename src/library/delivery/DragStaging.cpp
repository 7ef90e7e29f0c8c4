#include "library/delivery/DragStaging.h"

#include "base/Uuid.h"
#include "library/records/FileNames.h"
#include "platform/files/Files.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tonequill::DragStaging {

QString root()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/Tonequill/Drag"_s;
}

std::optional<QString> stage(const QString& copyOf, const QString& named)
{
    const auto path = reserve(named, Files::extension(copyOf));
    try {
        if (path)
            Files::copy(copyOf, *path);
    } catch (const FileError&) {
        return std::nullopt;
    }
    return path;
}

std::optional<QString> reserve(const QString& named, const QString& fileExtension)
{
    const QString folder = root() + u'/' + uuidText(QUuid::createUuid());
    if (!QDir().mkpath(folder))
        return std::nullopt;
    return folder + u'/' + Files::fittingName(FileNames::safe(named), fileExtension);
}

void clean()
{
    // What a link in its place leads to is not ours to remove.
    if (QFileInfo(root()).isSymLink())
        QFile::remove(root());
    else
        QDir(root()).removeRecursively();
}

bool holds(const QString& path)
{
    return (QDir::cleanPath(path) + u'/').startsWith(QDir::cleanPath(root()) + u'/');
}

} // namespace tonequill::DragStaging
