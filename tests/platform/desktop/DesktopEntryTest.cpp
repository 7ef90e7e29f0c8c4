#include "platform/desktop/DesktopEntry.h"

#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

DesktopEntry entryWith(const QByteArray& lines)
{
    return DesktopEntry::parse("[Desktop Entry]\nType=Application\n" + lines).value();
}

// The command for "/a b/ä.xml", its words between bars.
QString command(const QByteArray& exec, const QByteArray& lines = {})
{
    return entryWith("Exec=" + exec + '\n' + lines).command(u"/a b/ä.xml"_s).join(u'|');
}

} // namespace

TEST(DesktopEntry, IsReadFromItsGroup)
{
    const auto entry = DesktopEntry::parse("# a comment\nName=Before\n[Desktop Entry]\r\n Type = Application \nName=Editor\n"
                                           "Name[de]=Schnitt\nname=other\nName=Again\n#Icon=x\n=\nnoise\nWords=a\\sb\\\\c\\n\n"
                                           "[Desktop Action New]\nExec=other\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->value(u"Name"_s), u"Editor"_s);
    EXPECT_EQ(entry->value(u"Name[de]"_s), u"Schnitt"_s);
    EXPECT_EQ(entry->value(u"Words"_s), u"a b\\c\n"_s);
    EXPECT_EQ(entry->value(u"Icon"_s), QString());
    EXPECT_EQ(entry->value(u"Exec"_s), QString());
    EXPECT_TRUE(entry->command(u"/x"_s).isEmpty());
}

TEST(DesktopEntry, IsNoneForWhatIsNoApplication)
{
    for (const QByteArray& text : {QByteArray(), QByteArray("Type=Application"), QByteArray("[Other]\nType=Application"),
                                   QByteArray("[Desktop Entry]\nType=Link"), QByteArray("[Desktop Entry]\nName=x"),
                                   QByteArray("[Desktop Entry]\nType=Application\nHidden=true"), QByteArray(1000, '\0'),
                                   QByteArray("\xFF\xFE[Desktop Entry]")})
        EXPECT_FALSE(DesktopEntry::parse(text)) << text.toStdString();
}

TEST(DesktopEntry, HasLists)
{
    const DesktopEntry entry = entryWith("One=a\nTwo=a;b\nEnded=a;b;\nNone=\n");
    EXPECT_EQ(entry.list(u"One"_s), QStringList{u"a"_s});
    EXPECT_EQ(entry.list(u"Two"_s), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(entry.list(u"Ended"_s), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_TRUE(entry.list(u"None"_s).isEmpty());
    EXPECT_TRUE(entry.list(u"Missing"_s).isEmpty());
}

TEST(DesktopEntry, PutsTheFileWhereTheLineWantsIt)
{
    EXPECT_EQ(command("edit %f"), u"edit|/a b/ä.xml"_s);
    EXPECT_EQ(command("edit %F --new"), u"edit|/a b/ä.xml|--new"_s);
    EXPECT_EQ(command("edit %u"), u"edit|file:///a%20b/%C3%A4.xml"_s);
    EXPECT_EQ(command("edit --import=%U"), u"edit|--import=file:///a%20b/%C3%A4.xml"_s);
    EXPECT_EQ(command("edit"), u"edit|/a b/ä.xml"_s);
    EXPECT_EQ(command("edit --import"), u"edit|--import|/a b/ä.xml"_s);
}

TEST(DesktopEntry, KnowsTheOtherCodes)
{
    EXPECT_EQ(command("edit %i %c %k %d %f", "Icon=cut\nName=My Editor\n"), u"edit|--icon|cut|My Editor|/a b/ä.xml"_s);
    EXPECT_EQ(command("edit %i %c %f"), u"edit|/a b/ä.xml"_s);
    EXPECT_EQ(command("edit 100%% %f %"), u"edit|100%|/a b/ä.xml|%"_s);
    EXPECT_EQ(command("edit \"\" %f"), u"edit||/a b/ä.xml"_s);
}

TEST(DesktopEntry, ReadsQuotedWords)
{
    EXPECT_EQ(command("\"/opt/My Editor/edit\"  --a=\"b c\"\t%f"), u"/opt/My Editor/edit|--a=b c|/a b/ä.xml"_s);
    // Twice escaped: once as a value, once as a quoted word.
    EXPECT_EQ(command("edit \"\\\\$HOME \\\\\\\\ \\\\\"x\\\\\"\" %f"), u"edit|$HOME \\ \"x\"|/a b/ä.xml"_s);
    EXPECT_EQ(command("edit \"open"), QString());
    EXPECT_EQ(command(""), QString());
    EXPECT_EQ(command("  "), QString());
}

TEST(DesktopEntry, NeverTakesTheFileApart)
{
    const DesktopEntry entry = entryWith("Exec=edit %f\n");
    EXPECT_EQ(entry.command(u"/$(rm) %f \"x\".xml"_s), (QStringList{u"edit"_s, u"/$(rm) %f \"x\".xml"_s}));
}
