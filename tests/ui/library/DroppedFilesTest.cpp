#include "ui/library/DroppedFiles.h"

#include "library/delivery/DragStaging.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

QString wanted(const QList<QUrl>& urls)
{
    return DroppedFiles::wanted(urls).join(u' ');
}

QUrl urlIn(const QString& folder, const QString& rest)
{
    return QUrl::fromLocalFile(folder + rest);
}

} // namespace

TEST(DroppedFiles, AreTheLocalOnesInTheirOrder)
{
    EXPECT_EQ(wanted({QUrl(u"file:///b.wav"_s), QUrl(u"https://example.org/c.wav"_s), QUrl(u"file:///a%20b.mp4"_s)}),
              u"/b.wav /a b.mp4"_s);
    EXPECT_EQ(wanted({QUrl(u"text"_s)}), QString());
    EXPECT_EQ(wanted({}), QString());
}

TEST(DroppedFiles, NeverComeFromTheProgramItself)
{
    const QString root = DragStaging::root();
    EXPECT_EQ(wanted({urlIn(root, u"/ID/Door.wav"_s)}), QString());
    EXPECT_EQ(wanted({urlIn(root, u"/../../other/../Tonequill/Drag/ID/Door.wav"_s)}), QString());
    EXPECT_EQ(wanted({urlIn(root, u"ged.wav"_s)}), root + u"ged.wav"_s);
    EXPECT_EQ(wanted({urlIn(root, u"/ID/Door.wav"_s), QUrl(u"file:///Bell.wav"_s)}), u"/Bell.wav"_s);
}

TEST(DroppedFiles, AreKnownToComeFromTheProgram)
{
    const QUrl own = urlIn(DragStaging::root(), u"/ID/Door.wav"_s);
    const QUrl other(u"file:///Bell.wav"_s);
    EXPECT_TRUE(DroppedFiles::comeFromApp({own}));
    EXPECT_TRUE(DroppedFiles::comeFromApp({other, own}));
    EXPECT_FALSE(DroppedFiles::comeFromApp({other}));
    EXPECT_FALSE(DroppedFiles::comeFromApp({QUrl(u"some text"_s)}));
    EXPECT_FALSE(DroppedFiles::comeFromApp({}));
}
