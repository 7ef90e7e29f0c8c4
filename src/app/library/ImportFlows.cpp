// The flows that take sounds into the library and out of it.

#include "app/model/AppModel.h"

#include "platform/files/Files.h"

using namespace Qt::StringLiterals;

namespace tonequill {

QCoro::Task<> AppModel::importURLs(QStringList paths)
{
    const Working working(*this);
    QList<IncomingFile> files;
    for (const QString& path : paths)
        files.append({QUuid::createUuid(), Files::stem(path), std::make_shared<Progress>()});
    m_incoming += files;
    Q_EMIT incomingChanged();

    std::optional<QUuid> last;
    QStringList failures;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        try {
            last = (co_await m_library->importFile(paths[i], SoundOrigin::imported, {}, {}, files[i].progress)).id;
        } catch (const Cancelled&) {
        } catch (const std::exception& error) {
            failures << messageOf(error);
        }
        m_incoming.removeIf([&](const IncomingFile& file) { return file.id == files[i].id; });
        Q_EMIT incomingChanged();
    }
    if (last) {
        setSection(AppSection::library);
        setSelection(last);
        // The count keeps the plural: one of two files gives "1 sounds".
        say(paths.size() == 1 ? u"Found the best part. Check it, then add it."_s
                              : u"Added %1 sounds."_s.arg(paths.size() - failures.size()));
    }
    if (!failures.isEmpty())
        say(failures.first(), Tone::error);
}

void AppModel::deleteItems(const QList<SoundItem>& items)
{
    QSet<QUuid> ids;
    for (const SoundItem& item : items)
        ids.insert(item.id);
    m_selection.letGo(ids);
    m_library->deleteItems(items);
    m_selection.openNewest();
}

} // namespace tonequill
