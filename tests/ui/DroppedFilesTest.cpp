#include "ui/DroppedFiles.h"

#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

QString wanted(const QList<QUrl>& urls)
{
    return DroppedFiles::wanted(urls, u"/cache/Tonequill/Drag"_s).join(u' ');
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
    EXPECT_EQ(wanted({QUrl(u"file:///cache/Tonequill/Drag/ID/Door.wav"_s)}), QString());
    EXPECT_EQ(wanted({QUrl(u"file:///cache/other/../Tonequill/Drag/ID/Door.wav"_s)}), QString());
    EXPECT_EQ(wanted({QUrl(u"file:///cache/Tonequill/Dragged.wav"_s)}), u"/cache/Tonequill/Dragged.wav"_s);
    EXPECT_EQ(wanted({QUrl(u"file:///cache/Tonequill/Drag/ID/Door.wav"_s), QUrl(u"file:///Bell.wav"_s)}), u"/Bell.wav"_s);
}
