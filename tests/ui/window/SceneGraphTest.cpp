#include "ui/window/SceneGraph.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class SceneGraphTest : public testing::Test {
protected:
    // Puts a device there that everybody may use.
    QString add(const QString& name)
    {
        const QString path = devices.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return path;
    }
    bool hasHardware() const { return SceneGraph::hasHardware(devices.path()); }

    QTemporaryDir devices;
};

} // namespace

TEST_F(SceneGraphTest, ScreensAloneAreNoHardwareToDrawWith)
{
    EXPECT_FALSE(hasHardware());
    add(u"dri/card0"_s);
    EXPECT_FALSE(hasHardware());
}

TEST_F(SceneGraphTest, ARenderNodeIsHardware)
{
    add(u"dri/card0"_s);
    add(u"dri/renderD128"_s);
    EXPECT_TRUE(hasHardware());
}

TEST_F(SceneGraphTest, DriversWithoutARenderNodeCountAsWell)
{
    for (const QString& name : {u"nvidiactl"_s, u"dxg"_s}) {
        const QString path = add(name);
        EXPECT_TRUE(hasHardware()) << name.toStdString();
        QFile::remove(path);
        EXPECT_FALSE(hasHardware()) << name.toStdString();
    }
}

TEST_F(SceneGraphTest, ADeviceThatCannotBeOpenedIsNoHardware)
{
    QDir().mkpath(devices.filePath(u"dri"_s));
    ASSERT_TRUE(QFile::link(devices.filePath(u"gone"_s), devices.filePath(u"dri/renderD128"_s)));
    EXPECT_FALSE(hasHardware());
}
