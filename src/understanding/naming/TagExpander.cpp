#include "understanding/naming/TagExpander.h"

#include "base/Text.h"
#include "understanding/naming/ModelTexts.h"

#include <QJsonArray>
#include <QVariant>

namespace tonequill::TagExpander {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestTag = 20;
constexpr qsizetype kMostTags = 10;

RecordSchema soundIdea()
{
    return {u"SoundIdea"_s,
            {{u"meaning"_s, RecordSchema::Kind::text, ModelTexts::kMeaningGuide.toString()},
             {u"tags"_s, RecordSchema::Kind::texts, ModelTexts::kPhraseTagsGuide.toString()}}};
}

bool isTag(const QString& word)
{
    const qsizetype characters = text::characterCount(word);
    return characters > 0 && characters <= kLongestTag && text::letterCount(word) + word.count(u'-') == characters;
}

} // namespace

QCoro::Task<std::optional<Understanding>> understand(LanguageModel& model, QString phrase, std::optional<QString> translation)
{
    try {
        if (!co_await model.isAvailable())
            co_return std::nullopt;
        QString prompt = u"Phrase: "_s + phrase;
        if (translation)
            prompt += u" (a literal translation gave: "_s + *translation + u')';
        const QJsonObject idea = co_await model.respond(ModelTexts::kPhraseInstructions.toString(), prompt, soundIdea());
        const QStringList tags = sanitize(idea[u"tags"_s].toVariant().toStringList());
        if (tags.isEmpty())
            co_return std::nullopt;
        co_return Understanding{idea[u"meaning"_s].toString(), tags};
    } catch (const LanguageModelError&) {
        co_return std::nullopt;
    }
}

QStringList sanitize(const QStringList& tags)
{
    QStringList kept;
    for (const QString& tag : tags) {
        if (kept.size() == kMostTags)
            break;
        const QString word = text::trimmed(text::lowercase(tag));
        if (isTag(word) && !kept.contains(word))
            kept << word;
    }
    return kept;
}

} // namespace tonequill::TagExpander
