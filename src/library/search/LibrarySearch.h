#pragma once

#include "library/records/SoundItem.h"

#include <QList>
#include <QSet>

#include <vector>

namespace tonequill {

// The search over the library: words in any language, widened by their English
// meaning and by a few synonyms. It walks every sound for every query, but folds
// a sound's texts only when it meets them first or they have changed:
// bench/LibrarySearch.cpp. One thread.
class LibrarySearch {
public:
    // `items` is always the same list, and what was done to it has been told with
    // the functions below.

    // The matching sounds, best first, in their order where they match equally
    // well. All of them for a query without letters and numbers.
    QList<SoundItem> search(const QList<SoundItem>& items, const QString& query);

    // The sounds whose name or one of whose tags contains one of the words, in
    // their order.
    QList<SoundItem> containing(const QList<SoundItem>& items, const QStringList& words);

    void reset(qsizetype count) { m_folded = QList<Folded>(count); }
    void inserted(qsizetype index) { m_folded.insert(index, Folded()); }
    void changed(qsizetype index) { m_folded[index] = Folded(); }
    void removed(qsizetype index) { m_folded.removeAt(index); }

    // What a lower-cased word also stands for, itself included.
    static QSet<QString> expanded(const QString& word);

private:
    // Which letters and which pairs of neighbours a text has, in 64 classes each.
    // It tells of most texts that don't contain another without a look at them.
    struct Signature {
        quint64 letters = 0;
        quint64 pairs = 0;

        explicit Signature(QStringView text = {});
        bool mayContain(const Signature& part) const { return !((part.letters & ~letters) | (part.pairs & ~pairs)); }
    };
    struct Term;
    // The signatures lie apart, close together: a pasted text of a thousand words
    // is held against every sound.
    struct Terms {
        std::vector<Term> terms;
        std::vector<Signature> signatures; // of each
    };
    static Terms termsOf(const QStringList& words);

    // A sound's texts as they are compared, in one piece: the name, then each tag
    // behind a separator, then each descriptor between two.
    struct Folded {
        QString text; // null: not made yet
        qsizetype nameLength = 0;
        qsizetype tagsEnd = 0;
        Signature signature;
    };
    const Folded& folded(const QList<SoundItem>& items, qsizetype index);

    QList<Folded> m_folded; // one for each item
};

} // namespace tonequill
