#include "app/handover/HandedOver.h"

#include "app/library/ImportFlows.h"
#include "app/model/AppModel.h"
#include "app/smart/SmartActions.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"

#include <QDir>
#include <QJsonArray>

#include <climits>

using namespace Qt::StringLiterals;

namespace tonequill::HandedOver {

namespace {

const QString kAdd = u"add"_s;
const QString kDelete = u"delete"_s;
const QString kName = u"name"_s;

void addFiles(AppModel& model, const QJsonArray& values)
{
    QStringList files;
    for (const auto& value : values) {
        const QString file = value.toString();
        if (file.size() < PATH_MAX && QDir::isAbsolutePath(file)) // a longer one is no file's, and nobody could read it
            files << file;
    }
    if (!files.isEmpty())
        startFlow(importURLs(model, files));
}

QList<SoundItem> soundsOf(const AppModel& model, const QJsonArray& ids)
{
    QList<SoundItem> items;
    for (const auto& value : ids) {
        const auto id = uuidFromText(value.toString());
        if (const SoundItem* item = id ? model.library().find(*id) : nullptr)
            items << *item;
    }
    return items;
}

} // namespace

QJsonObject addMessage(const QStringList& files)
{
    return {{kAdd, QJsonArray::fromStringList(files)}};
}

QJsonObject carryOut(AppModel& model, const QJsonObject& message)
{
    const QStringList understood{kAdd, kDelete, kName};
    const bool isUnderstood = std::any_of(understood.begin(), understood.end(),
                                          [&message](const QString& key) { return message.value(key).isArray(); });
    addFiles(model, message.value(kAdd).toArray());
    bool isDeleted = true; // the answer tells that it was done
    if (message.contains(kDelete)) {
        startFlow(deleteItems(model, soundsOf(model, message.value(kDelete).toArray())));
        isDeleted = model.library().isSaved();
    }
    if (message.value(kName).isArray())
        startFlow(smartRename(model, soundsOf(model, message.value(kName).toArray())));
    QJsonObject answer{{u"ok"_s, isUnderstood && isDeleted}};
    if (!isDeleted)
        answer[u"error"_s] = u"Nothing was deleted: the disk may be full or read-only."_s;
    return answer;
}

std::optional<QJsonObject> answerOfOwner(const LibraryLock& lock, const QJsonObject& message, int patienceMs)
{
    const auto address = lock.ownerAddress();
    return address ? HandOver::send(*address, message, patienceMs) : std::nullopt;
}

bool sendToOwner(const LibraryLock& lock, const QJsonObject& message, int patienceMs)
{
    const auto answer = answerOfOwner(lock, message, patienceMs);
    return answer && answer->value(u"ok"_s).toBool();
}

} // namespace tonequill::HandedOver
