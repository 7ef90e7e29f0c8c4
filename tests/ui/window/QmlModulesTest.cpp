#include "ui/window/QmlModules.h"

#include "platform/process/Defaults.h"
#include "support/Printing.h"
#include "ui/kit/ThemeStore.h"
#include "ui/window/MainWindow.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// Of each module something that only a registered type of C++ gives: an object,
// or a value of a type that QML can't make.
const QHash<QString, QString>& samples()
{
    static const QHash<QString, QString> samples{
        {u"Tonequill.Kit"_s, u"NumberText { readonly property var sample: text }"_s},
        {u"Tonequill.Wave"_s, u"WaveformView { readonly property var sample: startSeconds }"_s},
        {u"Tonequill.Library"_s, u"QtObject { readonly property var sample: LibraryListModel.NameRole }"_s},
        {u"Tonequill.Editor"_s, u"QtObject { readonly property var sample: WaveStage.NoGrip }"_s},
        {u"Tonequill.Settings"_s, u"ThemeSwatch { readonly property var sample: radius }"_s},
        {u"Tonequill.Window"_s, u"QtObject { readonly property var sample: WindowModel.Library }"_s},
    };
    return samples;
}

} // namespace

TEST(QmlModules, EveryModuleHasASample)
{
    QStringList modules = QStringLiteral(TONEQUILL_QML_MODULES).split(u' ');
    QStringList sampled = samples().keys();
    modules.sort();
    sampled.sort();
    EXPECT_EQ(sampled, modules);
}

TEST(QmlModules, TheTypesOfEveryModuleAreKnown)
{
    const QTemporaryDir folder;
    Defaults defaults(folder.filePath(u"tonequill.ini"_s));
    const ThemeStore themes(defaults);
    QQmlEngine engine;
    prepareEngine(engine);
    for (const auto& [module, sample] : samples().asKeyValueRange()) {
        QQmlComponent component(&engine);
        component.setData(u"import QtQml\nimport %1\n%2"_s.arg(module, sample).toUtf8(), QUrl());
        const std::unique_ptr<QObject> object(component.create());
        ASSERT_TRUE(object) << component.errorString().toStdString();
        EXPECT_TRUE(object->property("sample").isValid()) << module.toStdString();
    }
}
