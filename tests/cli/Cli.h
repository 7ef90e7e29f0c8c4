#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace tonequill::test {

// tonequill-cli as a person at a terminal runs it, with folders of its own.
class Cli {
public:
    struct Result {
        int exitCode = -1;
        QByteArray out;
        QString error;

        QJsonDocument json() const { return QJsonDocument::fromJson(out); }
    };

    // A process that has its environment and its arguments, not started yet.
    void prepare(QProcess& process, const QStringList& arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), home.filePath(QStringLiteral("cache")));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(home.path());
        process.setProgram(QStringLiteral(TONEQUILL_CLI));
        process.setArguments(arguments);
    }

    Result run(const QStringList& arguments) const
    {
        QProcess process;
        prepare(process, arguments);
        process.start();
        if (!process.waitForFinished(60000))
            process.kill();
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
                QString::fromUtf8(process.readAllStandardError())};
    }

    // The same where no file grows beyond so many blocks of 512 bytes: on a full disk.
    Result runOnFullDisk(const QStringList& arguments, int blocks) const
    {
        QProcess process;
        prepare(process,
                QStringList{QStringLiteral("-c"), QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$0\" \"$@\"").arg(blocks),
                            QStringLiteral(TONEQUILL_CLI)} +
                    arguments);
        process.setProgram(QStringLiteral("sh"));
        process.start();
        if (!process.waitForFinished(60000))
            process.kill();
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QString library() const { return home.filePath(QStringLiteral("data/Tonequill/Library")); }
    QString at(const QString& name) const { return home.filePath(name); }

    QTemporaryDir home;
};

} // namespace tonequill::test
