#include "library/delivery/FinalCut.h"

#include "fakes/FakeClock.h"
#include "fakes/FakeOtherApps.h"
#include "platform/files/Files.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"

#include <QDir>
#include <QTemporaryDir>
#include <QUrl>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using FinalCut::Clip;

namespace {

// The document's elements, each as its name and its attributes in their order;
// empty if a strict reader refuses the document.
QStringList elementsOf(const QString& document)
{
    QXmlStreamReader reader(document.toUtf8());
    QStringList elements;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        QString element = reader.name().toString();
        for (const QXmlStreamAttribute& attribute : reader.attributes())
            element += u' ' + attribute.name().toString() + u'=' + attribute.value().toString();
        elements << element;
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return reader.hasError() ? QStringList() : elements;
}

QString documentOf(const Clip& clip)
{
    return FinalCut::fcpxml({clip}, u"Tonequill"_s);
}

} // namespace

TEST(FinalCut, WritesTheDocumentByteForByte)
{
    const QList<Clip> clips = {
        Clip::make(u"Rock & Roll <1>"_s, u"/home/me/Final Cut/Rock & Roll -1-.wav"_s, 96'000, 48'000, 2),
        Clip::make(u"it's a \"bell\""_s, u"/home/me/bell.wav"_s, 44'100, 44'100, 1),
    };
    EXPECT_EQ(FinalCut::fcpxml(clips, u"Ton & \"quill\""_s), uR"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE fcpxml>
<fcpxml version="1.10">
    <resources>
    <asset id="r1" name="Rock &amp; Roll &lt;1&gt;" start="0s" duration="96000/48000s" hasAudio="1" audioSources="1" audioChannels="2" audioRate="48k">
        <media-rep kind="original-media" src="file:///home/me/Final%20Cut/Rock%20&amp;%20Roll%20-1-.wav"/>
    </asset>
    <asset id="r2" name="it's a &quot;bell&quot;" start="0s" duration="44100/44100s" hasAudio="1" audioSources="1" audioChannels="1" audioRate="44.1k">
        <media-rep kind="original-media" src="file:///home/me/bell.wav"/>
    </asset>
    </resources>
    <library>
        <event name="Ton &amp; &quot;quill&quot;">
        <asset-clip ref="r1" name="Rock &amp; Roll &lt;1&gt;" duration="96000/48000s"/>
        <asset-clip ref="r2" name="it's a &quot;bell&quot;" duration="44100/44100s"/>
        </event>
    </library>
</fcpxml>
)"_s);
}

TEST(FinalCut, WritesAnEmptyEventWithoutClips)
{
    const QString document = FinalCut::fcpxml({}, u"Tonequill"_s);
    EXPECT_EQ(document, uR"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE fcpxml>
<fcpxml version="1.10">
    <resources>
    </resources>
    <library>
        <event name="Tonequill">
        </event>
    </library>
</fcpxml>
)"_s);
    EXPECT_EQ(elementsOf(document),
              (QStringList{u"fcpxml version=1.10"_s, u"resources"_s, u"library"_s, u"event name=Tonequill"_s}));
}

TEST(FinalCut, DeclaresOneOfTwoRatesAndCountsInTheTrueOne)
{
    const auto rateOf = [](qint64 frames, double rate) {
        const QString asset = elementsOf(documentOf(Clip::make(u"n"_s, u"/n.wav"_s, frames, rate, 2))).value(2);
        return asset.section(u"duration="_s, 1).section(u' ', 0, 0) + u' ' + asset.section(u"audioRate="_s, 1);
    };
    EXPECT_EQ(rateOf(44'100, 44'100), u"44100/44100s 44.1k"_s);
    EXPECT_EQ(rateOf(1'000, 22'050), u"1000/22050s 48k"_s);
    EXPECT_EQ(rateOf(0, 96'000), u"0/96000s 48k"_s);
    EXPECT_EQ(rateOf(5, 44'100.5), u"5/44100s 48k"_s) << "the rate is cut off, but isn't 44100";
    EXPECT_EQ(rateOf(345'600'000'000, 48'000), u"345600000000/48000s 48k"_s);
}

TEST(FinalCut, NamesFilesByTheirUrl)
{
    const auto urlOf = [](const QString& path) {
        return elementsOf(documentOf(Clip::make(u"n"_s, path, 1, 48'000, 1))).value(3).section(u"src="_s, 1);
    };
    EXPECT_EQ(urlOf(u"/a b/c&d.wav"_s), u"file:///a%20b/c&d.wav"_s);
    EXPECT_EQ(urlOf(u"/100% #1?[x];\"<y>\\.wav"_s), u"file:///100%25%20%231%3F%5Bx%5D%3B%22%3Cy%3E%5C.wav"_s);
    EXPECT_EQ(urlOf(u"/it's (1), a+b=c@d$!*~_.wav"_s), u"file:///it's%20(1),%20a+b=c@d$!*~_.wav"_s);
    EXPECT_EQ(urlOf(u"/رعد/é.wav"_s), u"file:///%D8%B1%D8%B9%D8%AF/%C3%A9.wav"_s);
    for (const QString& path : {u"/a b/100%.wav"_s, u"/رعد #1?;[].wav"_s})
        EXPECT_EQ(QUrl(urlOf(path)).toLocalFile(), path);
}

// Whatever a sound is called, a strict reader takes the document and reads the
// name back, but for what XML cannot hold.
TEST(FinalCut, CanBeReadWhateverTheNamesAre)
{
    struct Name {
        QString given;
        QString read;
    };
    QList<Name> names;
    for (const QString& same : {u""_s,
                                u" "_s,
                                u"&"_s,
                                u"&amp;"_s,
                                u"&#1;"_s,
                                u"<"_s,
                                u"</asset>"_s,
                                u"]]>"_s,
                                u"<![CDATA["_s,
                                u"<!--"_s,
                                u"-->"_s,
                                u"\""_s,
                                u"'"_s,
                                u"\"'\"'"_s,
                                u"%1 %2"_s,
                                u"%20"_s,
                                u"\\"_s,
                                u"a/b"_s,
                                u"رعد بعيد"_s,
                                u"雷鳴"_s,
                                u"👩‍👩‍👧‍👦"_s,
                                u"é"_s,
                                u"e\u0301"_s,
                                u"\u202Ertl"_s,
                                u"\u00A0"_s,
                                u"\uFEFFmark"_s,
                                u"\u2028"_s,
                                u"\uFFFD"_s,
                                u"\uE000"_s,
                                u"𝄞"_s,
                                u"\u0085"_s,
                                u"name=\"x\" y"_s,
                                u"$(rm)"_s,
                                u"<?xml?>"_s,
                                u"&&&&"_s,
                                QString(10'000, u'&'),
                                u"r1"_s,
                                u"\u007F"_s})
        names << Name{same, same};
    for (char16_t c = 0; c < 0x20; ++c) {
        const bool isSpace = c == u'\t' || c == u'\n' || c == u'\r';
        names << Name{u"a"_s + QChar(c) + u'b', isSpace ? u"a b"_s : u"ab"_s}; // a reader makes blanks of those
    }
    for (const char16_t c : {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFE, 0xFFFF})
        names << Name{u"a"_s + QChar(c) + u'b', u"ab"_s};
    names << Name{QString(QChar(0xDC00)) + QChar(0xD800), {}} << Name{u"end"_s + QChar(0xD83D), u"end"_s};
    ASSERT_GE(names.size(), 50);

    QList<Clip> clips;
    for (const Name& name : names)
        clips << Clip::make(name.given, u"/folder/"_s + QString(name.given).remove(QChar(0)) + u".wav"_s, 48'000, 48'000, 2);
    const QString document = FinalCut::fcpxml(clips, u"Tonequill"_s);
    const QStringList elements = elementsOf(document);
    ASSERT_EQ(elements.size(), 4 + 3 * names.size());
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QString id = u'r' + QString::number(i + 1);
        EXPECT_EQ(elements[2 + 2 * i],
                  u"asset id="_s + id + u" name="_s + names[i].read +
                      u" start=0s duration=48000/48000s hasAudio=1 audioSources=1 audioChannels=2 audioRate=48k"_s);
        EXPECT_EQ(elements[4 + 2 * names.size() + i],
                  u"asset-clip ref="_s + id + u" name="_s + names[i].read + u" duration=48000/48000s"_s);
    }
}

TEST(FinalCut, OpensTheDocumentThatItWrote)
{
    const QTemporaryDir folder;
    test::FakeOtherApps apps;
    test::FakeClock clock; // 1 778 307 200.25 seconds after 1970
    const QList<Clip> clips = {Clip::make(u"Dog"_s, u"/Dog.wav"_s, 1, 48'000, 1)};
    EXPECT_TRUE(FinalCut::isInstalled(apps));
    EXPECT_TRUE(FinalCut::send(FinalCut::write(clips, folder.path(), u"Tonequill"_s, clock), apps));
    const QString path = folder.filePath(u"Tonequill 1778307200.fcpxml"_s);
    EXPECT_EQ(apps.opened, QStringList{path});
    EXPECT_TRUE(apps.revealed.isEmpty());
    EXPECT_EQ(test::bytesOfFile(path), FinalCut::fcpxml(clips, u"Tonequill"_s).toUtf8());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(FinalCut, ReplacesTheDocumentOfTheSameSecond)
{
    const QTemporaryDir folder;
    test::FakeOtherApps apps;
    test::FakeClock clock;
    FinalCut::send(FinalCut::write({Clip::make(u"One"_s, u"/1.wav"_s, 1, 48'000, 1)}, folder.path(), u"Tonequill"_s, clock),
                   apps);
    clock.advance(std::chrono::milliseconds(700));
    FinalCut::send(FinalCut::write({}, folder.path(), u"Tonequill"_s, clock), apps);
    ASSERT_EQ(apps.opened.size(), 2);
    EXPECT_EQ(apps.opened[0], apps.opened[1]);
    EXPECT_EQ(test::bytesOfFile(apps.opened[1]), FinalCut::fcpxml({}, u"Tonequill"_s).toUtf8());
    clock.advance(std::chrono::milliseconds(100));
    FinalCut::send(FinalCut::write({}, folder.path(), u"Tonequill"_s, clock), apps);
    EXPECT_EQ(apps.opened.last(), folder.filePath(u"Tonequill 1778307201.fcpxml"_s));
}

TEST(FinalCut, ShowsTheDocumentWhereTheApplicationIsGone)
{
    const QTemporaryDir folder;
    test::FakeOtherApps apps;
    test::FakeClock clock;
    apps.isThere = false;
    EXPECT_FALSE(FinalCut::isInstalled(apps));
    EXPECT_FALSE(FinalCut::send(FinalCut::write({}, folder.path(), u"Tonequill"_s, clock), apps));
    EXPECT_TRUE(apps.opened.isEmpty());
    ASSERT_EQ(apps.revealed.size(), 1);
    EXPECT_TRUE(QFile::exists(apps.revealed.first()));
}

TEST(FinalCut, OpensNothingThatCouldNotBeWritten)
{
    test::FakeOtherApps apps;
    test::FakeClock clock;
    EXPECT_THROW(FinalCut::send(FinalCut::write({}, u"/nowhere/at all"_s, u"Tonequill"_s, clock), apps), FileError);
    EXPECT_TRUE(apps.opened.isEmpty());
    EXPECT_TRUE(apps.revealed.isEmpty());
}
