#include "platform/desktop/DesktopApps.h"

#include "support/Printing.h"
#include "support/SessionBus.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kBundle = u"com.example.Editor"_s;

template <typename Condition>
bool waitFor(Condition&& condition)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > 10'000)
            return false;
        QCoreApplication::processEvents();
        QThread::msleep(1);
    }
    return true;
}

// A user with no applications but those of the test.
class DesktopAppsTest : public testing::Test {
protected:
    DesktopAppsTest()
    {
        for (const char* folder : {"home/applications", "system/applications", "bin"})
            QDir().mkpath(path(QString::fromLatin1(folder)));
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }

    // A program that writes down what it is asked.
    void addProgram(const QString& name) const
    {
        QFile file(path(u"bin/"_s + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nprintf '%s\\n' \"${0##*/}\" \"$@\" >\"" + QFile::encodeName(path(u"asked.new"_s)) +
                   "\"\n/bin/mv \"" + QFile::encodeName(path(u"asked.new"_s)) + "\" \"" + QFile::encodeName(path(u"asked"_s)) +
                   "\"\n");
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    void addEntry(const QString& name, const QByteArray& lines) const
    {
        QDir().mkpath(QFileInfo(path(name)).absolutePath());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=Editor\n" + lines);
    }

    void addEditor() const
    {
        addProgram(u"edit"_s);
        addEntry(u"home/applications/editor.desktop"_s, "Exec=edit --import %f\nX-Tonequill-Bundle=com.example.Editor;\n");
    }

    // The lines that a program wrote down.
    QStringList asked() const
    {
        waitFor([&] { return QFile::exists(path(u"asked"_s)); });
        return QString::fromUtf8(test::bytesOfFile(path(u"asked"_s))).split(u'\n', Qt::SkipEmptyParts);
    }

    DesktopApps apps{300ms};

private:
    QTemporaryDir m_folder;
    test::Environment m_home{"XDG_DATA_HOME", QFile::encodeName(path(u"home"_s))};
    test::Environment m_system{"XDG_DATA_DIRS", QFile::encodeName(path(u"system"_s))};
    test::Environment m_programs{"PATH", QFile::encodeName(path(u"bin"_s))};
    test::Environment m_bus{"DBUS_SESSION_BUS_ADDRESS", ""};
    struct RealPlaces {
        RealPlaces() { QStandardPaths::setTestModeEnabled(false); }
        ~RealPlaces() { QStandardPaths::setTestModeEnabled(true); }
    } m_places;
};

// This process as the file manager of a session bus of the test's own.
class FileManager {
public:
    enum class Answer { shown, refused, none };

    explicit FileManager(Answer answer)
        : m_program(m_bus, u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                    [this, answer](const QDBusMessage& call, const QDBusConnection& bus) {
                        calls << call.member() + u' ' + call.arguments().value(0).toStringList().join(u',') + u' ' +
                                     call.arguments().value(1).toString();
                        if (answer == Answer::shown)
                            bus.send(call.createReply());
                        if (answer == Answer::refused)
                            bus.send(call.createErrorReply(QDBusError::Failed, u"no"_s));
                    })
    {}

    bool isThere() const { return m_program.isThere; }
    QStringList calls;

private:
    test::SessionBus m_bus;
    test::BusProgram m_program;
};

} // namespace

TEST_F(DesktopAppsTest, FindsTheApplicationThatDeclaresItself)
{
    EXPECT_FALSE(apps.has(kBundle));
    addEntry(u"home/applications/other.desktop"_s, "Exec=edit %f\nX-Tonequill-Bundle=com.example.Editor2;\n");
    EXPECT_FALSE(apps.has(kBundle));
    addEntry(u"home/applications/deep/er/editor.desktop"_s,
             "Exec=edit %f\nX-Tonequill-Bundle=com.example.Other;com.example.Editor\n");
    EXPECT_FALSE(apps.has(kBundle)) << "its program is not installed";
    addProgram(u"edit"_s);
    EXPECT_TRUE(apps.has(kBundle));
    EXPECT_FALSE(apps.has(u"com.example"_s));
    EXPECT_FALSE(apps.has({}));
}

TEST_F(DesktopAppsTest, OpensAFileWithIt)
{
    addEditor();
    EXPECT_TRUE(apps.open(u"/some where/it's.fcpxml"_s, kBundle));
    EXPECT_EQ(asked(), (QStringList{u"edit"_s, u"--import"_s, u"/some where/it's.fcpxml"_s}));
}

TEST_F(DesktopAppsTest, OpensNothingWithWhatHasGone)
{
    addEditor();
    EXPECT_TRUE(apps.has(kBundle));
    QFile::remove(path(u"bin/edit"_s));
    EXPECT_FALSE(apps.open(u"/x.fcpxml"_s, kBundle));
    addProgram(u"edit"_s);
    QFile::remove(path(u"home/applications/editor.desktop"_s));
    EXPECT_FALSE(apps.open(u"/x.fcpxml"_s, kBundle));
    EXPECT_FALSE(QFile::exists(path(u"asked"_s)));
}

TEST_F(DesktopAppsTest, PrefersTheUsersEntryToTheSystems)
{
    addProgram(u"edit"_s);
    addProgram(u"mine"_s);
    addEntry(u"system/applications/editor.desktop"_s, "Exec=edit %f\nX-Tonequill-Bundle=com.example.Editor\n");
    EXPECT_TRUE(apps.has(kBundle));
    addEntry(u"home/applications/editor.desktop"_s, "Exec=mine %f\nX-Tonequill-Bundle=com.example.Editor\n");
    EXPECT_TRUE(apps.open(u"/x"_s, kBundle));
    EXPECT_EQ(asked(), (QStringList{u"mine"_s, u"/x"_s}));
    addEntry(u"home/applications/editor.desktop"_s, "Hidden=true\n");
    EXPECT_FALSE(apps.has(kBundle)) << "the user has removed it";
}

TEST_F(DesktopAppsTest, AsksForTheProgramThatTheEntryNeeds)
{
    addProgram(u"edit"_s);
    addEntry(u"home/applications/editor.desktop"_s, "Exec=edit %f\nTryExec=missing\nX-Tonequill-Bundle=com.example.Editor\n");
    EXPECT_FALSE(apps.has(kBundle));
    addProgram(u"missing"_s);
    EXPECT_TRUE(apps.has(kBundle));
}

TEST_F(DesktopAppsTest, PassesOverEntriesThatCannotBeRead)
{
    addEditor();
    QDir().mkpath(path(u"home/applications/folder.desktop"_s));
    QFile::link(path(u"home/applications/nowhere"_s), path(u"home/applications/link.desktop"_s));

    addEntry(u"home/applications/huge.desktop"_s,
             QByteArray(2'000'000, 'x') + "\nX-Tonequill-Bundle=com.example.Huge\nExec=edit\n");
    EXPECT_TRUE(apps.has(kBundle));
    EXPECT_FALSE(apps.has(u"com.example.Huge"_s));
}

TEST_F(DesktopAppsTest, ShowsAFileInTheFileManager)
{
    FileManager manager(FileManager::Answer::shown);
    ASSERT_TRUE(manager.isThere());
    addProgram(u"xdg-open"_s);
    apps.reveal(u"/some where/ä.fcpxml"_s);
    EXPECT_TRUE(waitFor([&] { return !manager.calls.isEmpty(); }));
    EXPECT_EQ(manager.calls, QStringList{u"ShowItems file:///some%20where/%C3%A4.fcpxml "_s});
    apps.waitForAnswers();
    EXPECT_FALSE(QFile::exists(path(u"asked"_s)));
}

TEST_F(DesktopAppsTest, ShowsAFolderInTheFileManager)
{
    FileManager manager(FileManager::Answer::shown);
    ASSERT_TRUE(manager.isThere());
    addProgram(u"xdg-open"_s);
    apps.showFolder(u"/some where/Library"_s);
    EXPECT_TRUE(waitFor([&] { return !manager.calls.isEmpty(); }));
    EXPECT_EQ(manager.calls, QStringList{u"ShowFolders file:///some%20where/Library "_s});
    apps.waitForAnswers();
    EXPECT_FALSE(QFile::exists(path(u"asked"_s)));
}

TEST_F(DesktopAppsTest, OpensAFolderWithoutAFileManager)
{
    addProgram(u"xdg-open"_s);
    apps.showFolder(u"/some where/Library"_s);
    EXPECT_EQ(asked(), (QStringList{u"xdg-open"_s, u"/some where/Library"_s}));
}

TEST_F(DesktopAppsTest, OpensTheFolderWhereNothingCanSelectTheFile)
{
    addProgram(u"xdg-open"_s);
    for (const auto answer : {FileManager::Answer::refused, FileManager::Answer::none}) {
        FileManager manager(answer);
        ASSERT_TRUE(manager.isThere());
        QElapsedTimer time;
        time.start();
        apps.reveal(u"/some where/x.fcpxml"_s);
        EXPECT_LT(time.elapsed(), 200) << "nobody waits for the file manager";
        EXPECT_EQ(asked(), (QStringList{u"xdg-open"_s, u"/some where"_s}));
        EXPECT_EQ(manager.calls.size(), 1) << int(answer);
        QFile::remove(path(u"asked"_s));
    }
}

TEST_F(DesktopAppsTest, OpensTheFolderWithoutABus)
{
    addProgram(u"xdg-open"_s);
    for (const QByteArray& address : {QByteArray(), QByteArray("unix:path=/nowhere/bus"), QByteArray("nonsense")}) {
        const test::Environment bus("DBUS_SESSION_BUS_ADDRESS", address);
        apps.reveal(u"/some where/x.fcpxml"_s);
        EXPECT_EQ(asked(), (QStringList{u"xdg-open"_s, u"/some where"_s}));
        apps.waitForAnswers();
        QFile::remove(path(u"asked"_s));
    }
}
