#include "library/store/LibraryStore.h"

#include "audio/analysis/AudioAnalyzer.h"
#include "base/Background.h"
#include "base/Text.h"
#include "base/Uuid.h"
#include "library/records/NamePolicy.h"
#include "library/store/LibraryIndex.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"
#include "platform/files/SystemPath.h"
#include "platform/media/MediaTracks.h"
#include "platform/media/NamedFailures.h"

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
// An empty file that stands beside an audio file while no index on the disk may name it.
constexpr auto kImportMark = ".importing-"_L1;
constexpr qint64 kLargestIndex = qint64(1) << 30; // a million sounds; more is no index of ours
constexpr int kThumbnailBins = 48;

// A name that stays inside the library folder and isn't the index.
bool isSoundFileName(const QString& name)
{
    return !name.isEmpty() && !name.contains(u'/') && !name.contains(QChar(u'\0')) && !name.startsWith(u'.') &&
           name != kIndexName;
}

// The names of the regular files in a folder, and of what the disk doesn't tell the kind
// of; none if it doesn't tell the names.
// One listing without a question for each file: bench/Library.cpp opens 100,000 sounds.
std::optional<QSet<QString>> filesIn(const QString& folder)
{
    QSet<QString> names;
    std::error_code failure;
    const std::filesystem::path path = systemPath(folder).toStdString();
    for (std::filesystem::directory_iterator entry(path, failure), end; !failure && entry != end; entry.increment(failure)) {
        std::error_code unknown;
        if (entry->is_regular_file(unknown) || (unknown && unknown != std::errc::no_such_file_or_directory))
            names.insert(QFile::decodeName(entry->path().filename().c_str()));
    }
    return failure ? std::nullopt : std::optional(std::move(names));
}

// Why a file can't be read at all; empty for one that can.
QString causeOf(const QString& source)
{
    try {
        Files::requireReadable(source);
        return {};
    } catch (const FileError& error) {
        return error.message();
    }
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
            throw ImportError::unsupported(name, causeOf(source));
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
    json.clear(); // hundreds of megabytes, it may be
    m_indexWasReadable = records.has_value();
    if (!records)
        return;
    const auto present = filesIn(m_folder);
    m_wasListed = present.has_value();
    m_items = std::move(*records);
    m_items.removeIf([&present](const SoundItem& item) {
        return !isSoundFileName(item.fileName) || (present && !present->contains(item.fileName));
    });
    for (SoundItem& item : m_items)
        item.name = text::withoutControls(item.name);
    m_encoded.resize(m_items.size());
    m_search.reset(m_items.size());
}

int LibraryStore::save(const QStringList& imported, const QList<IndexWriter::Leaving>& leaving)
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
        marks << markOf(fileName);
    return m_writer.write(std::move(chunks), marks, leaving);
}

QString LibraryStore::markOf(const QString& fileName) const
{
    return m_folder + u'/' + kImportMark + fileName;
}

void LibraryStore::sweepUnfinished()
{
    if (!m_wasListed)
        return; // a disk that fails is left alone
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
    const QString name = text::withoutControls(info && info->name ? *info->name : Files::stem(source));
    const QString knownAs = info && info->name ? name : QFileInfo(source).fileName();
    const QUuid id = QUuid::createUuid();
    if (!progress)
        progress = std::make_shared<Progress>(); // it is cancelled when the store closes
    const auto work = [source, folder = m_folder, id, name, knownAs, progress] {
        return failingAs(knownAs, [&] { return bringIn(source, folder, id, name, progress.get()); });
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
    const ScratchFile temporary = ScratchFile::withExtension(fileExtension);
    const QString path = temporary.path();
    const auto write = [path, name, data] { failingAs(name, [&] { Files::writeDurably(path, std::span(&data, 1)); }); };
    co_await background(m_flows, m_workers.shown(), write);
    SoundInfo info;
    info.name = name;
    co_return co_await importFile(path, origin, tags, info);
}

SoundItem LibraryStore::update(SoundItem item, const std::function<void(SoundItem&)>& change)
{
    const SoundItem* changed = this->change(item.id, change);
    if (!changed)
        return item;
    save();
    return *changed;
}

const SoundItem* LibraryStore::change(QUuid id, const std::function<void(SoundItem&)>& change)
{
    const qsizetype index = indexOf(id);
    if (index < 0)
        return nullptr;
    change(m_items[index]);
    m_items[index].name = text::withoutControls(m_items[index].name);
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

SoundItem LibraryStore::Changes::update(SoundItem item, const std::function<void(SoundItem&)>& change)
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

QCoro::Task<bool> LibraryStore::deleteItems(QList<SoundItem> items)
{
    QSet<QUuid> ids;
    for (const SoundItem& item : items)
        ids.insert(item.id);
    const QList<Taken> taken = takeOut(ids);
    const QList<IndexWriter::Leaving> leaving = filesOnlyOf(taken);
    const int state = save({}, leaving);
    for (int seen = 0; seen != m_writer.newest();) { // until no save is on its way that may be told of it
        seen = m_writer.newest();
        co_await saved();
    }
    if (m_writer.hasWritten(state))
        co_return true;
    m_writer.keep(leaving);
    putBack(taken);
    co_return false;
}

QList<LibraryStore::Taken> LibraryStore::takeOut(const QSet<QUuid>& ids)
{
    QList<Taken> taken;
    // Whoever is told of one may remove others.
    for (qsizetype index = m_items.size() - 1; index >= 0; index = std::min(index, m_items.size()) - 1) {
        if (!ids.contains(m_items[index].id))
            continue;
        taken.append({index, m_items.takeAt(index)});
        m_encoded.removeAt(index);
        m_search.removed(index);
        Q_EMIT itemRemoved(int(index));
    }
    return taken;
}

void LibraryStore::putBack(const QList<Taken>& taken)
{
    for (auto one = taken.crbegin(); one != taken.crend(); ++one) { // the first in the list was the last to go
        const qsizetype index = std::min(one->index, m_items.size());
        m_items.insert(index, one->item);
        m_encoded.insert(index, QByteArray());
        m_search.inserted(index);
        Q_EMIT itemInserted(int(index));
    }
}

QList<IndexWriter::Leaving> LibraryStore::filesOnlyOf(const QList<Taken>& taken) const
{
    QSet<QString> others;
    for (const SoundItem& item : m_items)
        others.insert(item.fileName);
    QList<IndexWriter::Leaving> leaving;
    for (const Taken& one : taken) {
        if (isSoundFileName(one.item.fileName) && !others.contains(one.item.fileName))
            leaving.append({path(one.item), markOf(one.item.fileName)});
    }
    return leaving;
}

} // namespace tonequill
