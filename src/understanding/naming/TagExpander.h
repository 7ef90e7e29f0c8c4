#pragma once

#include "platform/network/LanguageModel.h"

#include <QStringList>

#include <optional>

// What a phrase means and which tags of a sound library fit it, asked of a
// language model; and the one cleaner of tags that models make.
namespace tonequill::TagExpander {

struct Understanding {
    QString meaning;
    QStringList tags; // cleaned, never empty

    bool operator==(const Understanding&) const = default;
};

// Nothing when there is no usable answer, for whatever reason. Keep `model`
// until it is done.
QCoro::Task<std::optional<Understanding>> understand(LanguageModel& model, QString phrase, std::optional<QString> translation);

// Lower-case single words of letters and "-", at most 20 characters each, no
// repeats, the first 10 of them.
QStringList sanitize(const QStringList& tags);

} // namespace tonequill::TagExpander
