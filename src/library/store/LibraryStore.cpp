#include "library/store/LibraryStore.h"

#include "audio/analysis/AudioAnalyzer.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "library/records/NamePolicy.h"
#include "library/store/LibraryIndex.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"
#include "platform/media/MediaTracks.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr auto kIndexName = "index.json"_L1;
// An empty file that stands beside an audio file until the index names it.
constexpr auto kImportMark = ".importing-"_L1;
constexpr qint64 kLargestIndex = qint64(1) << 30; // a million sounds; more is no index of ours
constexpr int kThumbnailBins = 48;

// A name that stays inside the library folder and isn't the index.
bool isSoundFileName(const QString& name)
{
    return !name.isEmpty() && !name.contains(u'/') && !name.contains(QChar(u'\0')) && !name.startsWith(u'.') &&
           name != kIndexName;
}

// The names of the regular files in a folder. One listing without a question for
// each file: bench/Library.cpp opens 100,000 sounds.
QSet<QString> filesIn(const QString& folder)
{
    QSet<QString> names;
    std::error_code ignored;
    const std::filesystem::path path = QFile::encodeName(folder).toStdString();
    for (std::filesystem::directory_iterator entry(path, ignored), end; entry != end; entry.increment(ignored)) {
        if (entry->is_regular_file(ignored))
            names.insert(QFile::decodeName(entry->path().filename().c_str()));
    }
    return names;
}

struct ImportedFile {
    QString fileName;
    AudioAnalysis analysis;
    ScratchFile audio; // until the library has it
    ScratchFile mark;
};

// The part of an import that reads and writes files. Runs in the background.
ImportedFile bringIn(const QString& source, const QString& folder, const QUuid& id, const QString& name, Progress* progress)
{
    const MediaTracks tracks = [&] {
        try {
            return mediaTracks(source, progress);
        } catch (const AudioFileError&) {
            throw ImportError::unsupported(name);
        }
    }();
    if (tracks.audioCount == 0)
        throw ImportError::noAudio(name);

    const bool isVideo = tracks.videoCount > 0;
    const QString fileName = uuidText(id) + u'.' + (isVideo ? u"m4a"_s : Files::extension(source).toLower());
    const QString destination = folder + u'/' + fileName;
    const QString mark = folder + u'/' + kImportMark + fileName;
    ImportedFile imported{fileName, {}, ScratchFile(destination), ScratchFile(mark)};
    Files::writeDurably(mark, {});
    if (isVideo)
        extractFirstAudio(source, destination, progress);
    else
        Files::copy(source, destination, progress);
    try {
        imported.analysis = AudioAnalyzer::analyze(destination, progress);
    } catch (const UserError&) {
        throw ImportError::unsupported(name);
    }
    // The audio is on the disk before the index names it.
    Files::syncFile(destination);
    Files::syncFolder(folder);
    return imported;
}

} // namespace

QString LibraryStore::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Tonequill/Library"_s;
}

LibraryStore::LibraryStore(Clock& clock, Workers& workers, const QString& folder)
    : m_clock(clock),
      m_workers(workers),
      m_folder(QDir::cleanPath(folder)),
      m_writer(m_folder + u'/' + kIndexName)
{
    QDir().mkpath(m_folder);
    load();
}

void LibraryStore::load()
{
    QByteArray json;
    try {
        json = Files::readAll(m_folder + u'/' + kIndexName, kLargestIndex);
    } catch (const FileError& error) {
        m_indexWasReadable = error.reason() == FileError::Reason::notFound;
        return;
    }
    auto records = LibraryIndex::decode(json);
    m_indexWasReadable = records.has_value();
    if (!records)
        return;
    const QSet<QString> present = filesIn(m_folder);
    for (SoundItem& item : *records) {
        if (isSoundFileName(item.fileName) && present.contains(item.fileName))
            m_items.append(std::move(item));
    }
    m_encoded.resize(m_items.size());
    m_search.reset(m_items.size());
}

void LibraryStore::save(const QStringList& imported)
{
    std::vector<QByteArray> chunks;
    chunks.reserve(static_cast<std::size_t>(m_items.size()) * 2 + 2);
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        if (m_encoded[i].isEmpty())
            m_encoded[i] = LibraryIndex::encode(m_items[i]);
        chunks.push_back(i == 0 ? "[" : ",");
        chunks.push_back(m_encoded[i]);
    }
    chunks.push_back(m_items.isEmpty() ? "[]" : "]");
    QStringList marks; // not needed once the index names the files
    for (const QString& fileName : imported)
        marks << m_folder + u'/' + kImportMark + fileName;
    m_writer.write(std::move(chunks), marks);
}

void LibraryStore::sweepUnfinished()
{
    Files::sweepStrays(m_folder);
    const bool isReplaced = m_writer.writeCount() > 0 && m_writer.finish();
    if (!m_indexWasReadable && !isReplaced)
        return; // it may have named them
    QSet<QString> named;
    for (const SoundItem& item : std::as_const(m_items))
        named.insert(item.fileName);
    const QDir folder(m_folder);
    for (const QString& mark : folder.entryList({kImportMark + u'*'}, QDir::Files | QDir::Hidden)) {
        const QString fileName = mark.sliced(kImportMark.size());
        if (isSoundFileName(fileName) && !named.contains(fileName))
            QFile::remove(folder.filePath(fileName));
        QFile::remove(folder.filePath(mark));
    }
}

QString LibraryStore::path(const SoundItem& item) const
{
    return m_folder + u'/' + item.fileName;
}

qsizetype LibraryStore::indexOf(const QUuid& id) const
{
    const auto found = std::find_if(m_items.begin(), m_items.end(), [&id](const SoundItem& item) { return item.id == id; });
    return found == m_items.end() ? -1 : found - m_items.begin();
}

const SoundItem* LibraryStore::find(const QUuid& id) const
{
    const qsizetype index = indexOf(id);
    return index < 0 ? nullptr : &m_items[index];
}

bool LibraryStore::contains(const QString& sourceID) const
{
    return std::any_of(m_items.begin(), m_items.end(), [&sourceID](const SoundItem& item) { return item.sourceID == sourceID; });
}

QCoro::Task<SoundItem> LibraryStore::importFile(QString source, SoundOrigin origin, QStringList tags,
                                                std::optional<SoundInfo> info, ProgressPtr progress)
{
    const QString name = info && info->name ? *info->name : Files::stem(source);
    const QUuid id = QUuid::createUuid();
    if (!progress)
        progress = std::make_shared<Progress>(); // it is cancelled when the store closes
    const auto work = [source, folder = m_folder, id, name, progress] {
        return bringIn(source, folder, id, name, progress.get());
    };
    ImportedFile imported = co_await background(m_flows, m_workers.shown(), work, progress);

    SoundItem item;
    item.id = id;
    item.name = name;
    item.fileName = imported.fileName;
    item.duration = imported.analysis.duration;
    item.descriptors = imported.analysis.descriptors;
    item.tags = info ? tags + info->tags : tags;
    item.origin = origin;
    item.createdAt = m_clock.secondsSince2001();
    item.nameIsAuto = origin == SoundOrigin::imported && NamePolicy::isGeneric(name);
    if (info) {
        item.sourceID = info->sourceID;
        item.license = info->license;
        item.credit = info->credit;
        item.pageURL = info->pageURL;
    }
    item.thumbnail = imported.analysis.thumbnail(kThumbnailBins);

    imported.audio.keep();
    imported.mark.keep(); // it goes when the index is on the disk
    m_items.prepend(item);
    m_encoded.prepend({});
    m_search.inserted(0);
    save({item.fileName});
    Q_EMIT itemInserted(0);
    co_await saved();
    co_return SoundItem(item); // a copy: QCoro 0.8 moves out of variables
}

QCoro::Task<SoundItem> LibraryStore::importData(QByteArray data, QString name, QString fileExtension, SoundOrigin origin,
                                                QStringList tags)
{
    const QString path = QDir::tempPath() + u'/' + uuidText(QUuid::createUuid()) + u'.' + fileExtension;
    struct Temporary {
        QString path;
        ~Temporary() { QFile::remove(path); }
    } const temporary{path};
    const auto write = [path, data] { Files::writeDurably(path, std::span(&data, 1)); };
    co_await background(m_flows, m_workers.shown(), write);
    SoundInfo info;
    info.name = name;
    co_return co_await importFile(path, origin, tags, info);
}

SoundItem LibraryStore::update(const SoundItem& item, const std::function<void(SoundItem&)>& change)
{
    const SoundItem* changed = this->change(item.id, change);
    if (!changed)
        return item;
    save();
    return *changed;
}

const SoundItem* LibraryStore::change(const QUuid& id, const std::function<void(SoundItem&)>& change)
{
    const qsizetype index = indexOf(id);
    if (index < 0)
        return nullptr;
    change(m_items[index]);
    m_encoded[index].clear();
    m_search.changed(index);
    Q_EMIT itemChanged(int(index));
    return find(id); // whoever was told may have changed the list
}

LibraryStore::Changes::~Changes()
{
    if (m_hasChanged)
        m_library.save();
}

SoundItem LibraryStore::Changes::update(const SoundItem& item, const std::function<void(SoundItem&)>& change)
{
    const SoundItem* changed = m_library.change(item.id, change);
    m_hasChanged |= changed != nullptr;
    return changed ? *changed : item;
}

SoundItem LibraryStore::rename(const SoundItem& item, const QString& name, std::optional<bool> nameIsAuto)
{
    return update(item, [&](SoundItem& stored) {
        stored.name = name;
        if (nameIsAuto)
            stored.nameIsAuto = nameIsAuto;
    });
}

void LibraryStore::deleteItems(const QList<SoundItem>& items)
{
    QSet<QUuid> ids;
    for (const SoundItem& item : items) {
        ids.insert(item.id);
        if (isSoundFileName(item.fileName))
            QFile::remove(path(item));
    }
    for (qsizetype index = m_items.size() - 1; index >= 0; --index) {
        if (!ids.contains(m_items[index].id))
            continue;
        m_items.removeAt(index);
        m_encoded.removeAt(index);
        m_search.removed(index);
        Q_EMIT itemRemoved(int(index));
    }
    save();
}

} // namespace tonequill
