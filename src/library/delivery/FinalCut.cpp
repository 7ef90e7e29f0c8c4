#include "library/delivery/FinalCut.h"

#include "platform/files/Files.h"

#include <array>

using namespace Qt::StringLiterals;

namespace tonequill::FinalCut {

namespace {

const QString kBundle = u"com.apple.FinalCut"_s;

// The production Char of XML 1.0: no other character may stand in a document,
// not even as a reference.
QString allowedInXml(const QString& text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            result += text[i];
            result += text[++i];
        } else if ((c >= 0x20 && c < 0xFFFE && !QChar::isSurrogate(c)) || c == u'\t' || c == u'\n' || c == u'\r') {
            result += text[i];
        }
    }
    return result;
}

QString escaped(QString text)
{
    return text.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s).replace(u'"', u"&quot;"_s);
}

QString urlOf(const QString& file)
{
    // What the path of a URL may hold as it is (RFC 3986, pchar and "/") without
    // the semicolon, which older readers take for the start of parameters.
    return u"file://"_s + QString::fromLatin1(file.toUtf8().toPercentEncoding("/!$&'()*+,=:@"));
}

QString idOf(qsizetype index)
{
    return u'r' + QString::number(index + 1);
}

QString durationOf(const Clip& clip)
{
    return QString::number(clip.frames) + u'/' + QString::number(static_cast<qint64>(clip.sampleRate)) + u's';
}

} // namespace

Clip Clip::make(const QString& name, const QString& file, qint64 frames, double sampleRate, int channels)
{
    return {allowedInXml(name), file, frames, sampleRate, channels};
}

bool isInstalled(const OtherApps& apps)
{
    return apps.has(kBundle);
}

QString fcpxml(const QList<Clip>& clips, const QString& eventName)
{
    QString text = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<!DOCTYPE fcpxml>\n"
                   "<fcpxml version=\"1.10\">\n"
                   "    <resources>\n"_s;
    for (qsizetype i = 0; i < clips.size(); ++i) {
        const Clip& clip = clips[i];
        // Every other rate is declared as 48k; the duration counts in the true one.
        const QString rate = clip.sampleRate == 44'100 ? u"44.1k"_s : u"48k"_s;
        text += u"    <asset id=\""_s + idOf(i) + u"\" name=\""_s + escaped(clip.name) + u"\" start=\"0s\" duration=\""_s +
                durationOf(clip) + u"\" hasAudio=\"1\" audioSources=\"1\" audioChannels=\""_s + QString::number(clip.channels) +
                u"\" audioRate=\""_s + rate + u"\">\n"_s;
        text += u"        <media-rep kind=\"original-media\" src=\""_s + escaped(urlOf(clip.file)) + u"\"/>\n"_s;
        text += u"    </asset>\n"_s;
    }
    text += u"    </resources>\n"
            "    <library>\n"
            "        <event name=\""_s +
            escaped(eventName) + u"\">\n"_s;
    for (qsizetype i = 0; i < clips.size(); ++i)
        text += u"        <asset-clip ref=\""_s + idOf(i) + u"\" name=\""_s + escaped(clips[i].name) + u"\" duration=\""_s +
                durationOf(clips[i]) + u"\"/>\n"_s;
    text += u"        </event>\n"
            "    </library>\n"
            "</fcpxml>\n"_s;
    return text;
}

QString write(const QList<Clip>& clips, const QString& folder, const QString& eventName, const Clock& clock)
{
    const QString path =
        folder + u"/Tonequill "_s + QString::number(static_cast<qint64>(clock.secondsSince1970())) + u".fcpxml"_s;
    const std::array document = {fcpxml(clips, eventName).toUtf8()};
    Files::writeDurably(path, document);
    return path;
}

bool send(const QString& document, OtherApps& apps)
{
    if (apps.open(document, kBundle))
        return true;
    apps.reveal(document);
    return false;
}

} // namespace tonequill::FinalCut
