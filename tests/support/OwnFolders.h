#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

namespace tonequill::test {

// Gives this process data, cache and settings folders of its own for as long as
// it lives: nothing a test does may reach the user's, or another test's.
class OwnFolders {
public:
    OwnFolders()
    {
        for (const char* name : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"})
            qputenv(name, QFile::encodeName(m_folder.filePath(QString::fromLatin1(name))));
    }

private:
    QTemporaryDir m_folder;
};

} // namespace tonequill::test
