#include "cli/LibraryAccess.h"

#include "app/handover/HandedOver.h"
#include "base/Uuid.h"
#include "cli/Command.h"
#include "cli/Terminal.h"

using namespace Qt::StringLiterals;

namespace tonequill::cli {

std::unique_ptr<OwnLibrary> ownLibrary(const QString& folder)
{
    auto own = std::make_unique<OwnLibrary>();
    own->lock = std::make_unique<LibraryLock>(folder);
    if (!own->lock->acquireSoon(HandedOver::kPatienceForOwnerMs))
        return nullptr;
    own->store = std::make_unique<LibraryStore>(own->clock, own->workers, folder);
    own->store->sweepUnfinished();
    return own;
}

std::optional<int> handToOwner(const QString& folder, const QJsonObject& message)
{
    const auto answer = HandedOver::answerOfOwner(LibraryLock(folder), message);
    if (answer && answer->value(u"ok"_s).toBool())
        return std::nullopt;
    if (answer && answer->contains(u"error"_s)) {
        terminal::complain(answer->value(u"error"_s).toString());
        return kFailed;
    }
    terminal::complain(u"Another program is changing the library. Try again when it has finished."_s);
    return kLibraryBusy;
}

std::optional<SoundItem> soundMeant(const QList<SoundItem>& items, const QString& word)
{
    constexpr qsizetype kShortestBeginning = 8;
    QList<SoundItem> meant;
    for (const SoundItem& item : items) {
        const bool isByID = word.size() >= kShortestBeginning && uuidText(item.id).startsWith(word, Qt::CaseInsensitive);
        if (isByID || item.name.compare(word, Qt::CaseInsensitive) == 0)
            meant << item;
    }
    if (meant.size() == 1)
        return meant.first();
    if (meant.isEmpty()) {
        terminal::complain(u"There is no sound “%1” in the library."_s.arg(word));
    } else {
        terminal::complain(u"%1 sounds are called “%2”. Give the beginning of the id of one:"_s.arg(meant.size()).arg(word));
        for (const SoundItem& item : meant)
            terminal::complain(u"  %1  %2  %3"_s.arg(uuidText(item.id), terminal::lengthText(item.duration), item.name));
    }
    return std::nullopt;
}

std::optional<QList<SoundItem>> soundsMeant(const QList<SoundItem>& items, const QStringList& words)
{
    QList<SoundItem> meant;
    for (const QString& word : words) {
        const auto item = soundMeant(items, word);
        if (!item)
            return std::nullopt;
        meant << *item;
    }
    return meant;
}

} // namespace tonequill::cli
