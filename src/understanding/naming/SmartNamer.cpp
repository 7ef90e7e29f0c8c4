#include "understanding/naming/SmartNamer.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "understanding/naming/ModelTexts.h"
#include "understanding/naming/TagExpander.h"

#include <QSet>
#include <QVariant>

namespace tonequill::SmartNamer {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostWords = 4;
constexpr qsizetype kLongestName = 40;

RecordSchema soundNameIdea()
{
    return {u"SoundNameIdea"_s,
            {{u"name"_s, RecordSchema::Kind::text, ModelTexts::kNameGuide.toString()},
             {u"tags"_s, RecordSchema::Kind::texts, ModelTexts::kNameTagsGuide.toString()}}};
}

// Words that a name may not contain.
bool isFiller(const QString& word)
{
    static const QSet<QString> words = {u"sound"_s, u"sounds"_s, u"effect"_s,    u"effects"_s, u"sfx"_s,
                                        u"audio"_s, u"clip"_s,   u"recording"_s, u"noise"_s};
    return words.contains(text::lowercase(word));
}

QString listed(const QStringList& words, const QString& otherwise)
{
    return words.isEmpty() ? otherwise : words.join(u", "_s);
}

QString promptFor(const SoundFacts& facts)
{
    return QStringList{u"Current name: "_s + facts.name,
                       u"What the recognizer heard, most likely first: "_s + listed(facts.labels, u"unknown"_s),
                       u"Length: "_s + numberText::fixed(facts.duration, 1) + u" seconds"_s,
                       u"Traits: "_s + listed(facts.descriptors, u"none"_s),
                       u"Existing tags: "_s + listed(facts.existingTags, u"none"_s)}
        .join(u'\n');
}

QString withoutEdges(const QString& text)
{
    const QStringView dropped = u".,;:!-_ ";
    QStringView rest = text;
    while (!rest.isEmpty() && dropped.contains(rest.front()))
        rest = rest.sliced(1);
    while (!rest.isEmpty() && dropped.contains(rest.back()))
        rest.chop(1);
    return rest.toString();
}

// Splits on white space and "_".
QStringList wordsOf(const QString& text)
{
    QStringList words{QString()};
    for (const QChar c : text) {
        if (c.isSpace() || c == u'_')
            words << QString();
        else
            words.last() += c;
    }
    words.removeAll(QString());
    return words;
}

QString capitalized(const QString& word)
{
    const QString first = text::firstCharacters(word, 1);
    return first.toUpper() + text::lowercase(word.sliced(first.size()));
}

} // namespace

QCoro::Task<std::optional<SoundNaming>> askModel(LanguageModel& model, SoundFacts facts)
{
    try {
        const QJsonObject idea =
            co_await model.respond(ModelTexts::kNameInstructions.toString(), promptFor(facts), soundNameIdea());
        const auto name = cleanName(idea[u"name"_s].toString());
        if (!name)
            co_return std::nullopt;
        co_return SoundNaming{*name, TagExpander::sanitize(idea[u"tags"_s].toVariant().toStringList())};
    } catch (const LanguageModelError&) {
        co_return std::nullopt;
    }
}

SoundNaming fallback(const SoundFacts& facts)
{
    SoundNaming naming;
    if (!facts.labels.isEmpty())
        naming.name = cleanName(facts.labels.first()).value_or(QString());
    QStringList tags;
    for (const QString& trait : facts.descriptors)
        if (trait == u"punchy" || trait == u"deep" || trait == u"bright")
            tags << trait;
    for (const QString& label : facts.labels)
        tags << text::lowercase(label).split(u' ');
    naming.tags = TagExpander::sanitize(tags);
    return naming;
}

std::optional<QString> cleanName(const std::optional<QString>& text)
{
    if (!text)
        return {};
    QString plain = *text;
    for (const QChar quote : {u'"', u'\u201C', u'\u201D'})
        plain.remove(quote);
    const QStringList all = wordsOf(withoutEdges(plain));
    QStringList words;
    std::copy_if(all.begin(), all.end(), std::back_inserter(words), [](const QString& word) { return !isFiller(word); });
    if (words.isEmpty())
        words = all;
    if (words.isEmpty() || words.size() > kMostWords)
        return {};
    for (QString& word : words) {
        if (text::numberCount(word) > 0)
            return {};
        word = capitalized(word);
    }
    const QString name = words.join(u' ');
    if (text::characterCount(name) > kLongestName)
        return {};
    return name;
}

} // namespace tonequill::SmartNamer
