#pragma once

#include "base/Text.h"
#include "discovery/catalogue/IndexSearch.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace tonequill::test {

// The search of the catalogue as it is told, step by step and without a thought for time:
// what the quick one must equal.
class PlainSearch {
public:
    explicit PlainSearch(QList<OnlineSound> sounds) : m_sounds(std::move(sounds))
    {
        for (int n = 0; n < m_sounds.size(); ++n) {
            QStringList tags;
            for (const QString& tag : m_sounds[n].tags)
                tags << text::lowercase(tag);
            const QString title = text::lowercase(m_sounds[n].title);
            const QStringList words = text::words(title);
            for (const QString& tag : QSet<QString>(tags.begin(), tags.end()))
                m_tagPostings[tag] << n;
            for (const QString& word : QSet<QString>(words.begin(), words.end())) {
                if (text::characterCount(word) >= 3)
                    m_wordPostings[word] << n;
            }
            m_lowerTags << tags;
            m_lowerTitles << title;
            m_titleWordSets << QSet<QString>(words.begin(), words.end());
        }
    }

    QList<OnlineSound> search(const IndexQuery& query) const
    {
        const QSet<QString> primary(query.primary.begin(), query.primary.end());
        QList<float> scores(m_sounds.size(), 0);
        QList<int> candidates;
        const auto add = [&](const QList<int>& postings, float weight) {
            for (const int n : postings) {
                if (scores[n] == 0)
                    candidates << n;
                scores[n] += weight;
            }
        };
        for (const QString& term : query.terms) {
            add(m_tagPostings.value(term), primary.contains(term) ? 12 : 3.5F);
            add(m_wordPostings.value(term), primary.contains(term) ? 7.5F : 2.5F);
        }
        QList<int> kept;
        for (const int n : candidates) {
            if (query.maxSeconds && m_sounds[n].duration > *query.maxSeconds)
                continue;
            scores[n] += static_cast<float>(m_sounds[n].popularity) * 4;
            kept << n;
        }
        std::stable_sort(kept.begin(), kept.end(), [&](int one, int other) { return scores[one] > scores[other]; });
        kept.resize(std::min<qsizetype>(kept.size(), std::max<qsizetype>(query.limit, 400)));

        struct Record {
            int n;
            double final;
        };
        QList<Record> records;
        for (const int n : kept) {
            const double score = exact(n, query, primary);
            if (score > 0)
                records.append({n, score + m_sounds[n].popularity * 4 + (query.preferArabic && m_sounds[n].isArabic ? 3 : 0)});
        }
        std::stable_sort(records.begin(), records.end(),
                         [](const Record& one, const Record& other) { return one.final > other.final; });
        QList<OnlineSound> found;
        for (const Record& record : records.first(std::min(records.size(), query.limit)))
            found << m_sounds[record.n];
        return found;
    }

private:
    double exact(int n, const IndexQuery& query, const QSet<QString>& primary) const
    {
        const QStringList& tags = m_lowerTags[n];
        double sum = 0;
        int matched = 0;
        int primaryMatched = 0;
        for (const QString& term : query.terms) {
            const bool isInTag = std::any_of(tags.begin(), tags.end(), [&](const QString& tag) { return tag.contains(term); });
            double s = tags.contains(term) ? 5 : isInTag ? 2 : 0;
            s += m_titleWordSets[n].contains(term) ? 4 : m_lowerTitles[n].contains(term) ? 2 : 0;
            if (s <= 0)
                continue;
            ++matched;
            if (primary.contains(term)) {
                ++primaryMatched;
                sum += s + 4;
            } else {
                sum += s * 0.5;
            }
        }
        double score = sum + primaryMatched * 3 + matched;
        if (matched == 0)
            score -= 6;
        if (!query.maxSeconds)
            return score;
        const double d = m_sounds[n].duration;
        score += d <= 3 ? 3 : d <= 6 ? 1.5 : d <= 12 ? 0 : -1.5;
        for (const char* tag : {"loop", "music", "song", "ambience", "ambient", "test", "demo"}) {
            if (tags.contains(QString::fromLatin1(tag)))
                return score - 2;
        }
        return score;
    }

    QList<OnlineSound> m_sounds;
    QList<QStringList> m_lowerTags;
    QStringList m_lowerTitles;
    QList<QSet<QString>> m_titleWordSets;
    QHash<QString, QList<int>> m_tagPostings;
    QHash<QString, QList<int>> m_wordPostings;
};

} // namespace tonequill::test
