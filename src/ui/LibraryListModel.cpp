#include "ui/LibraryListModel.h"

#include "base/Background.h"
#include "base/TimeText.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// Tags that every other sound has, and so tell nothing in a row.
const QSet<QString>& plainTags()
{
    static const QSet<QString> tags{u"free"_s, u"pack"_s, u"cc0"_s, u"ai"_s, u"sfx"_s, u"music"_s};
    return tags;
}

constexpr int kProgressMs = 250; // a percentage that changes faster can't be read

} // namespace

QString LibraryRow::subtitle(const SoundItem& item)
{
    QStringList telling;
    for (const QString& tag : item.tags) {
        if (!plainTags().contains(tag) && telling.size() < 2)
            telling << tag;
    }
    const QString duration = TimeText::roughDuration(item.duration);
    return telling.isEmpty() ? duration : duration + u" · "_s + telling.join(u", "_s);
}

bool LibraryRow::needsCredit(const SoundItem& item)
{
    return item.license && item.license->startsWith(u"CC BY"_s, Qt::CaseInsensitive);
}

QString LibraryRow::step(double fraction, bool isFirst)
{
    if (fraction <= 0)
        return isFirst ? u"Adding…"_s : u"Waiting…"_s;
    return u"Adding… %1 %"_s.arg(int(fraction * 100));
}

LibraryListModel::LibraryListModel(AppModel& app)
    : m_app(app),
      m_sounds(app.library().items()),
      m_incoming(app.incoming()),
      m_related(app.languageModel(), app.clock())
{
    m_current = app.selectionOrNull();
    for (const SoundItem& item : m_sounds)
        m_ids << item.id;
    const LibraryStore& library = app.library();
    connect(&library, &LibraryStore::itemInserted, this, [this](int index) {
        m_ids.insert(index, m_app.library().items()[index].id);
        find();
    });
    connect(&library, &LibraryStore::itemChanged, this, [this](int index) {
        find();
        const int row = rowOf(m_ids[index]);
        if (row >= 0)
            Q_EMIT dataChanged(this->index(row), this->index(row));
    });
    connect(&library, &LibraryStore::itemRemoved, this, &LibraryListModel::removeSound);
    connect(&app, &AppModel::incomingChanged, this, &LibraryListModel::takeIncoming);
    connect(&app, &AppModel::multiChanged, this, [this] {
        if (!m_sounds.isEmpty())
            Q_EMIT dataChanged(index(incomingCount()), index(rowCount() - 1), {IsSelectedRole});
    });
    connect(&app, &AppModel::beingNamedChanged, this, [this](const QUuid& id) {
        const auto found =
            std::find_if(m_sounds.begin(), m_sounds.end(), [&id](const SoundItem& sound) { return sound.id == id; });
        if (found == m_sounds.end())
            return;
        const QModelIndex row = index(incomingCount() + int(found - m_sounds.begin()));
        Q_EMIT dataChanged(row, row, {SubtitleRole, IsBeingNamedRole});
    });
    connect(&app, &AppModel::selectionChanged, this, [this] { setCurrent(m_app.selectionOrNull()); });
    connect(&m_related, &RelatedWords::wordsChanged, this, &LibraryListModel::find);
    m_progressTimer.setInterval(kProgressMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &LibraryListModel::lookAtProgress);
}

int LibraryListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : incomingCount() + int(m_sounds.size());
}

QHash<int, QByteArray> LibraryListModel::roleNames() const
{
    return {{NameRole, "name"},
            {SubtitleRole, "subtitle"},
            {LevelsRole, "levels"},
            {IsIncomingRole, "isIncoming"},
            {IsSelectedRole, "selected"},
            {CreditRole, "credit"},
            {IsBeingNamedRole, "isBeingNamed"}};
}

QVariant LibraryListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (index.row() < incomingCount())
        return incomingData(index.row(), role);
    const SoundItem& sound = m_sounds[index.row() - incomingCount()];
    switch (role) {
    case NameRole:
        return sound.name;
    case SubtitleRole:
        return m_app.isBeingNamed(sound.id) ? u"Listening…"_s : LibraryRow::subtitle(sound);
    case LevelsRole:
        return QVariant::fromValue(
            Levels{sound.thumbnail ? QList<float>(sound.thumbnail->begin(), sound.thumbnail->end()) : QList<float>()});
    case IsIncomingRole:
        return false;
    case IsSelectedRole:
        return m_app.multi().contains(sound.id);
    case CreditRole:
        return LibraryRow::needsCredit(sound) ? sound.creditLine() : QString();
    case IsBeingNamedRole:
        return m_app.isBeingNamed(sound.id);
    default:
        return {};
    }
}

QVariant LibraryListModel::incomingData(qsizetype row, int role) const
{
    const IncomingFile& file = m_incoming[row];
    switch (role) {
    case NameRole:
        return file.name;
    case SubtitleRole:
        return LibraryRow::step(file.progress->fraction(), row == 0);
    case LevelsRole:
        return QVariant::fromValue(Levels());
    case IsIncomingRole:
        return true;
    case IsSelectedRole:
    case IsBeingNamedRole:
        return false;
    case CreditRole:
        return QString();
    default:
        return {};
    }
}

void LibraryListModel::setQuery(const QString& query)
{
    if (query == m_query)
        return;
    m_query = query;
    find();
    m_related.setQuery(query, m_searchFoundNothing ? RelatedWords::Found::nothing : RelatedWords::Found::something);
    Q_EMIT queryChanged();
}

QString LibraryListModel::relatedHeading() const
{
    return isRelated() ? u"Related to “%1”: %2"_s.arg(m_query, m_related.words().join(u", "_s)) : QString();
}

QString LibraryListModel::nothingFound() const
{
    return m_query.isEmpty() || rowCount() > 0 ? QString() : u"No Results for “%1”"_s.arg(m_query);
}

void LibraryListModel::find()
{
    const QList<SoundItem> found = m_app.library().search(m_query);
    m_searchFoundNothing = found.isEmpty();
    show(isRelated() ? m_app.library().containing(m_related.words()) : found);
}

void LibraryListModel::show(const QList<SoundItem>& sounds)
{
    // What stays at both ends stays on the screen; the rows between are exchanged.
    const auto isSame = [](const SoundItem& a, const SoundItem& b) { return a.id == b.id; };
    const auto [oldBegin, newBegin] = std::mismatch(m_sounds.cbegin(), m_sounds.cend(), sounds.cbegin(), sounds.cend(), isSame);
    const auto [oldEnd, newEnd] = std::mismatch(m_sounds.crbegin(), std::reverse_iterator(oldBegin), sounds.crbegin(),
                                                std::reverse_iterator(newBegin), isSame);
    const int first = incomingCount() + int(oldBegin - m_sounds.cbegin());
    const int gone = int(oldEnd.base() - oldBegin);
    const int come = int(newEnd.base() - newBegin);
    if (gone > 0) {
        beginRemoveRows({}, first, first + gone - 1);
        m_sounds.remove(first - incomingCount(), gone);
        endRemoveRows();
    }
    if (come > 0)
        beginInsertRows({}, first, first + come - 1);
    m_sounds = sounds; // with the records of today
    if (come > 0)
        endInsertRows();
    Q_EMIT countChanged();
    Q_EMIT currentRowChanged();
}

void LibraryListModel::removeSound(int index)
{
    // The others are found as before. Deleting thousands must not search thousands of times.
    const int row = rowOf(m_ids.takeAt(index));
    if (row >= 0) {
        beginRemoveRows({}, row, row);
        m_sounds.removeAt(row - incomingCount());
        endRemoveRows();
        if (m_sounds.isEmpty() && !m_query.isEmpty())
            find(); // what is related may show now
    }
    Q_EMIT countChanged();
    Q_EMIT currentRowChanged();
}

void LibraryListModel::takeIncoming()
{
    const QList<IncomingFile>& now = m_app.incoming();
    const auto isIn = [](const QList<IncomingFile>& files, const QUuid& id) {
        return std::any_of(files.begin(), files.end(), [&id](const IncomingFile& file) { return file.id == id; });
    };
    for (qsizetype row = m_incoming.size() - 1; row >= 0; --row) {
        if (isIn(now, m_incoming[row].id))
            continue;
        beginRemoveRows({}, int(row), int(row));
        m_incoming.removeAt(row);
        endRemoveRows();
    }
    // New ones are always appended.
    if (now.size() > m_incoming.size()) {
        beginInsertRows({}, incomingCount(), int(now.size()) - 1);
        m_incoming = now;
        endInsertRows();
    }
    if (!m_incoming.isEmpty())
        lookAtProgress();
    m_incoming.isEmpty() ? m_progressTimer.stop() : m_progressTimer.start();
    Q_EMIT countChanged();
    Q_EMIT currentRowChanged();
}

void LibraryListModel::lookAtProgress()
{
    Q_EMIT dataChanged(index(0), index(incomingCount() - 1), {SubtitleRole});
}

const SoundItem* LibraryListModel::soundAt(int row) const
{
    const qsizetype index = row - incomingCount();
    return index >= 0 && index < m_sounds.size() ? &m_sounds[index] : nullptr;
}

int LibraryListModel::rowOf(const QUuid& id) const
{
    const auto found = std::find_if(m_sounds.begin(), m_sounds.end(), [&id](const SoundItem& sound) { return sound.id == id; });
    return found == m_sounds.end() ? -1 : incomingCount() + int(found - m_sounds.begin());
}

void LibraryListModel::setCurrent(const QUuid& id)
{
    m_current = id;
    Q_EMIT currentRowChanged();
}

void LibraryListModel::click(int row, int modifiers)
{
    const SoundItem* sound = soundAt(row);
    if (!sound)
        return;
    const SoundItem clicked = *sound;
    m_app.click(clicked, m_sounds, Qt::KeyboardModifiers(modifiers));
    setCurrent(clicked.id);
}

void LibraryListModel::moveTo(int row, int modifiers)
{
    if (m_sounds.isEmpty())
        return;
    // The arrows know of Shift alone: what Control adds is the mouse's.
    click(std::clamp(row, incomingCount(), rowCount() - 1), modifiers & Qt::ShiftModifier);
}

void LibraryListModel::enter()
{
    if (currentRow() < 0)
        moveTo(0, Qt::NoModifier);
}

void LibraryListModel::selectAll()
{
    m_app.selectAllInLibrary(m_sounds);
}

void LibraryListModel::deleteSelected()
{
    m_app.deleteItems(selectedSounds());
}

QList<SoundItem> LibraryListModel::selectedSounds() const
{
    QList<SoundItem> selected;
    std::copy_if(m_sounds.begin(), m_sounds.end(), std::back_inserter(selected),
                 [this](const SoundItem& sound) { return m_app.multi().contains(sound.id); });
    return selected;
}

QList<SoundItem> LibraryListModel::meantBy(int row) const
{
    const SoundItem* sound = soundAt(row);
    if (!sound)
        return {};
    return m_app.multi().contains(sound->id) ? selectedSounds() : QList<SoundItem>{*sound};
}

QString LibraryListModel::deleteLabel(int row) const
{
    const qsizetype count = meantBy(row).size();
    return count > 1 ? u"Delete %1 Sounds"_s.arg(count) : u"Delete"_s;
}

QString LibraryListModel::smartNameLabel(int row) const
{
    return meantBy(row).size() > 1 ? u"Smart Names"_s : u"Smart Name"_s;
}

void LibraryListModel::smartNameFrom(int row)
{
    if (const QList<SoundItem> meant = meantBy(row); !meant.isEmpty())
        startFlow(m_app.smartRename(meant));
}

void LibraryListModel::deleteFrom(int row)
{
    m_app.deleteItems(meantBy(row));
}

} // namespace tonequill
