#include "terms/SearchTerms.h"

#include "base/Text.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

namespace tonequill::SearchTerms {

namespace {

// Words that carry no meaning in a search.
constexpr std::array<QStringView, 39> kStopWords{
    u"أنا", u"أنت", u"أنتِ", u"هو",  u"هي", u"نحن", u"هم",   u"هذا", u"هذه", u"ذلك", u"تلك", u"في",  u"من",
    u"على", u"إلى", u"عن",  u"مع",  u"هل", u"ما",  u"ماذا", u"كيف", u"لا",  u"يا",  u"و",   u"ثم",  u"أن",
    u"إن",  u"كان", u"كل",  u"بعض", u"لي", u"لك",  u"له",   u"بدي", u"عم",  u"شو",  u"ليش", u"انا", u"انت",
};

// In the order they are tried: with the article, then single letters.
constexpr std::array<QStringView, 12> kPrefixes{u"عال", u"بال", u"لل", u"وال", u"فال", u"كال",
                                                u"و",   u"ف",   u"ب",  u"ل",   u"ك",   u"س"};
constexpr std::array<QStringView, 10> kSuffixes{u"ات", u"ون", u"ين", u"ان", u"ه", u"ي", u"ك", u"نا", u"ها", u"هم"};

constexpr QChar kTatweel(0x0640);
constexpr QChar kHamza(0x0621);
constexpr QStringView kArticle = u"ال";

bool isMark(QChar c)
{
    return c.unicode() >= 0x064B && c.unicode() <= 0x0652; // fathatan … sukun
}

using Characters = QList<QStringView>;

bool isSameCharacter(QStringView one, QStringView other)
{
    return one.size() == other.size() && one.front() == other.front() && (one.size() == 1 || one == other);
}

// A beginning or an end of whole characters: a letter with a mark of its own is another letter.
bool beginsWith(const Characters& word, const Characters& prefix)
{
    return word.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), word.begin(), isSameCharacter);
}

bool endsWith(const Characters& word, const Characters& suffix)
{
    return word.size() >= suffix.size() && std::equal(suffix.rbegin(), suffix.rend(), word.rbegin(), isSameCharacter);
}

QString joined(const Characters& characters)
{
    QString text;
    for (const QStringView character : characters)
        text += character;
    return text;
}

template <std::size_t Size>
std::vector<Characters> charactersOf(const std::array<QStringView, Size>& texts)
{
    std::vector<Characters> all;
    for (const QStringView text : texts)
        all.push_back(text::characters(text));
    return all;
}

qsizetype distance(const Characters& one, const Characters& other)
{
    std::vector<qsizetype> above(std::size_t(other.size()) + 1);
    std::vector<qsizetype> row(above.size());
    std::iota(above.begin(), above.end(), 0);
    for (qsizetype i = 0; i < one.size(); ++i) {
        row[0] = i + 1;
        for (std::size_t j = 0; j + 1 < row.size(); ++j) {
            const qsizetype replaced = above[j] + (isSameCharacter(one[i], other[qsizetype(j)]) ? 0 : 1);
            row[j + 1] = std::min({replaced, above[j + 1] + 1, row[j] + 1});
        }
        std::swap(above, row);
    }
    return above.back();
}

struct Tables {
    QHash<QString, QStringList> words;
    std::vector<Characters> keys; // of `words`, cut up once; views into its keys
    QSet<QString> stopWords;
    std::vector<Characters> prefixes = charactersOf(kPrefixes);
    std::vector<Characters> suffixes = charactersOf(kSuffixes);

    Tables()
    {
        QFile file(u":/terms/arabic-english.txt"_s);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("the dictionary is not in the program");
        const QString text = QString::fromUtf8(file.readAll());
        for (const QStringView line : QStringView(text).split(u'\n', Qt::SkipEmptyParts)) {
            if (line.startsWith(u'#'))
                continue;
            const QList<QStringView> sides = line.split(u" = ");
            const QString key = normalize(sides.first());
            if (!words.contains(key))
                words.insert(key, sides.last().toString().split(u", "_s));
        }
        for (auto row = words.keyBegin(); row != words.keyEnd(); ++row)
            keys.push_back(text::characters(*row));
        for (const QStringView word : kStopWords)
            stopWords.insert(stripMarks(word));
    }
};

const Tables& tables()
{
    static const Tables theTables;
    return theTables;
}

} // namespace

const QHash<QString, QStringList>& dictionary()
{
    return tables().words;
}

bool containsArabic(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) {
        return (c.unicode() >= 0x0600 && c.unicode() <= 0x06FF) || (c.unicode() >= 0x0750 && c.unicode() <= 0x077F);
    });
}

QString stripMarks(QStringView text)
{
    QString kept = text.toString();
    return kept.removeIf([](QChar c) { return isMark(c) || c == kTatweel; });
}

QString normalize(QStringView text)
{
    QString folded = stripMarks(text);
    for (QChar& c : folded) {
        switch (c.unicode()) {
        case 0x0622: // alef with madda,
        case 0x0623: // with hamza above
        case 0x0625: // and below
            c = QChar(0x0627);
            break;
        case 0x0624: // hamza on waw
        case 0x0626: // and on ya
            c = kHamza;
            break;
        case 0x0629: // ta marbuta
            c = QChar(0x0647);
            break;
        case 0x0649: // alef maqsura
            c = QChar(0x064A);
            break;
        default:
            break;
        }
    }
    folded.remove(kHamza);
    if (folded.startsWith(kArticle)) {
        const Characters characters = text::characters(folded);
        if (characters.size() >= 4 && beginsWith(characters, text::characters(kArticle)))
            folded.remove(0, kArticle.size());
    }
    return folded;
}

QStringList variants(const QString& word)
{
    const Characters whole = text::characters(word);
    QList<Characters> stems{whole};
    if (whole.size() > 3) {
        for (const Characters& prefix : tables().prefixes) {
            if (beginsWith(whole, prefix))
                stems << whole.sliced(prefix.size());
        }
    }
    QStringList found;
    for (const Characters& stem : stems) {
        if (stem.size() != whole.size())
            found << joined(stem);
        for (const Characters& suffix : tables().suffixes) {
            if (stem.size() - suffix.size() > 2 && endsWith(stem, suffix))
                found << joined(stem.first(stem.size() - suffix.size()));
        }
    }
    return found;
}

qsizetype editDistance(QStringView one, QStringView other)
{
    return distance(text::characters(one), text::characters(other));
}

QStringList closest(const QString& word)
{
    const Characters characters = text::characters(word);
    if (characters.size() < 4)
        return {};
    const Characters* only = nullptr;
    for (const Characters& key : tables().keys) {
        if (std::abs(key.size() - characters.size()) > 1 || key.size() < 3 || distance(key, characters) > 1)
            continue;
        if (only)
            return {}; // a guess between two would be no better than none
        only = &key;
    }
    return only ? dictionary().value(joined(*only)) : QStringList();
}

QStringList english(const QString& word, Fuzzy fuzzy)
{
    if (!containsArabic(word))
        return {};
    const QString normal = normalize(word);
    const QHash<QString, QStringList>& words = dictionary();
    if (const auto exact = words.find(normal); exact != words.end())
        return *exact;
    for (const QString& variant : variants(normal)) {
        if (const auto known = words.find(variant); known != words.end())
            return *known;
    }
    return fuzzy == Fuzzy::yes ? closest(normal) : QStringList();
}

std::optional<QString> onlineQuery(const QString& text)
{
    if (!containsArabic(text))
        return std::nullopt;
    QStringList asked;
    for (const QString& word : text::words(text)) {
        if (tables().stopWords.contains(stripMarks(word)))
            continue;
        const QStringList known = english(word, Fuzzy::yes);
        if (!known.isEmpty())
            asked << known.first();
        else if (std::any_of(word.begin(), word.end(), [](QChar c) { return c.unicode() < 0x80; }))
            asked << word;
    }
    if (asked.isEmpty())
        return std::nullopt;
    return asked.join(u' ');
}

} // namespace tonequill::SearchTerms
