#pragma once

#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

namespace tonequill {

// How a sound came to the library.
enum class SoundOrigin { imported, generated, cut };

// The text of an origin in the index, and back; none for an unknown text.
QString originText(SoundOrigin origin);
std::optional<SoundOrigin> originFromText(QStringView text);

// One sound of the library: a plain value, identified by `id`. The fields stand
// in the order of their keys in the index.
struct SoundItem {
    QUuid id;                // also the stem of fileName
    QString name;            // as shown and searched
    QString fileName;        // inside the library folder, with its extension
    double duration = 0;     // seconds, from the analysis of the stored file
    QStringList tags;        // order kept, duplicates possible
    QStringList descriptors; // from AudioAnalyzer::describe
    SoundOrigin origin = SoundOrigin::imported;
    double createdAt = 0;            // seconds since 2001-01-01 00:00:00 UTC
    std::optional<bool> nameIsAuto;  // true while what is heard may replace the name
    std::optional<QString> sourceID; // identity of the online source
    std::optional<QString> license;
    std::optional<QString> credit; // the person to credit
    std::optional<QString> pageURL;
    std::optional<std::vector<float>> thumbnail; // 48 values in 0…1

    bool operator==(const SoundItem&) const = default;

    // The attribution sentence: “Name” by Credit (License) URL, without the parts
    // that are missing.
    QString creditLine() const;

    // Adds each tag that it doesn't have yet.
    void addTags(const QStringList& more);
};

// Over all fields, as equality is.
size_t qHash(const SoundItem& item, size_t seed = 0);

// The extra facts that a caller may hand to an import.
struct SoundInfo {
    std::optional<QString> name; // the display name to use
    QStringList tags;
    std::optional<QString> sourceID;
    std::optional<QString> license;
    std::optional<QString> credit;
    std::optional<QString> pageURL;
};

} // namespace tonequill
