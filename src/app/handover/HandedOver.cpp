#include "app/handover/HandedOver.h"

#include "app/library/ImportFlows.h"
#include "app/model/AppModel.h"
#include "app/smart/SmartActions.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QThread>

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
        if (const QString file = value.toString(); QDir::isAbsolutePath(file))
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

bool sendToOwner(const LibraryLock& lock, const QJsonObject& message, int patienceMs)
{
    constexpr unsigned long kPauseMs = 50;
    const QDeadlineTimer deadline(patienceMs);
    do {
        const auto address = lock.ownerAddress();
        const auto answer = address ? HandOver::send(*address, message, int(deadline.remainingTime())) : std::nullopt;
        if (answer)
            return answer->value(u"ok"_s).toBool();
        QThread::msleep(kPauseMs);
    } while (!deadline.hasExpired());
    return false;
}

} // namespace tonequill::HandedOver
