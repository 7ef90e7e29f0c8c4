#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tonequill::test {

// Gives this process home, data, cache, settings and temporary folders of its own for as
// long as it lives: nothing a test does may reach the user's, or another test's.
class OwnFolders {
public:
    OwnFolders()
    {
        QDir(m_folder.path()).mkdir(QStringLiteral("TMPDIR"));
        for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "TMPDIR"})
            qputenv(name, QFile::encodeName(m_folder.filePath(QString::fromLatin1(name))));
    }

private:
    QTemporaryDir m_folder;
};

} // namespace tonequill::test
