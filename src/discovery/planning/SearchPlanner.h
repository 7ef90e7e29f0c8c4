#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

// From what a person types in English to the tags of sounds: people type intents
// ("fight", "hungry"), the catalogue and the network know tags.
//
// The intents are resources/planning/intents.txt. Pure; any thread; the table is
// built on first use.
namespace tonequill::SearchPlanner {

struct Plan {
    QStringList terms;   // in lower case, at most 8, most wanted first
    QStringList primary; // the person's own words and their stems, as typed
    QString summary;     // the first five terms, for the person to read

    bool operator==(const Plan&) const = default;
};

// Any text has a plan; that of an empty one is empty.
Plan plan(const QString& text);

// The word, and at most one form of it without an English ending.
QStringList variants(const QString& word);

// What is typed, and the terms it stands for.
const QHash<QString, QStringList>& intents();

} // namespace tonequill::SearchPlanner
