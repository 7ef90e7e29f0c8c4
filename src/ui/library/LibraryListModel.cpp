#include "ui/library/LibraryListModel.h"

#include "app/delivery/ExportFlows.h"
#include "app/library/ImportFlows.h"
#include "app/smart/SmartActions.h"
#include "base/Background.h"
#include "base/Text.h"
#include "base/TimeText.h"
#include "library/records/License.h"

#include <QClipboard>
#include <QGuiApplication>
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

QString LibraryRow::step(double fraction, bool isFirst)
{
    if (fraction <= 0)
        return isFirst ? u"Adding…"_s : u"Waiting…"_s;
    return u"Adding… %1 %"_s.arg(int(fraction * 100));
}

LibraryListModel::LibraryListModel(AppModel& app)
    : m_app(app),
      m_session(app.librarySession()),
      m_incoming(app.incoming().files())
{
    follow();
    followIncoming();
    connect(&app.selection(), &Selection::multiChanged, this, [this] {
        if (!m_session.sounds().isEmpty())
            Q_EMIT dataChanged(index(incomingCount()), index(rowCount() - 1), {IsSelectedRole});
        Q_EMIT footNoteChanged();
    });
    connect(&app.names(), &NamesBeingFound::changed, this, [this](const QUuid& id) {
        tellChanged(m_session.indexOf(id), {SubtitleRole, IsBeingNamedRole});
    });
}

void LibraryListModel::follow()
{
    connect(&m_session, &LibrarySession::aboutToRemove, this,
            [this](int first, int count) { beginRemoveRows({}, incomingCount() + first, incomingCount() + first + count - 1); });
    connect(&m_session, &LibrarySession::removed, this, [this] { endRemoveRows(); });
    connect(&m_session, &LibrarySession::aboutToInsert, this,
            [this](int first, int count) { beginInsertRows({}, incomingCount() + first, incomingCount() + first + count - 1); });
    connect(&m_session, &LibrarySession::inserted, this, [this] { endInsertRows(); });
    connect(&m_session, &LibrarySession::recordChanged, this, [this](int index) { tellChanged(index); });
    connect(&m_session, &LibrarySession::soundsChanged, this, &LibraryListModel::countChanged);
    connect(&m_session, &LibrarySession::currentChanged, this, &LibraryListModel::currentRowChanged);
    connect(&m_session, &LibrarySession::wentToCurrent, this, [this] {
        if (currentRow() >= 0)
            Q_EMIT rowWanted(currentRow());
    });
    connect(&m_session, &LibrarySession::queryChanged, this, &LibraryListModel::queryChanged);
    connect(&m_session, &LibrarySession::soundsChanged, this, &LibraryListModel::footNoteChanged);
}

void LibraryListModel::tellChanged(int index, const QList<int>& roles)
{
    if (index < 0)
        return;
    const QModelIndex row = this->index(incomingCount() + index);
    Q_EMIT dataChanged(row, row, roles);
}

int LibraryListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : incomingCount() + int(m_session.sounds().size());
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
    const SoundItem& sound = m_session.sounds()[indexOf(index.row())];
    switch (role) {
    case NameRole:
        return text::shownPart(sound.name);
    case SubtitleRole:
        return m_app.names().isLookedAt(sound.id) ? u"Listening…"_s : LibraryRow::subtitle(sound);
    case LevelsRole:
        return QVariant::fromValue(
            Levels{sound.thumbnail ? QList<float>(sound.thumbnail->begin(), sound.thumbnail->end()) : QList<float>()});
    case IsIncomingRole:
        return false;
    case IsSelectedRole:
        return m_app.selection().multi().contains(sound.id);
    case CreditRole:
        return License::needsCredit(sound.license) ? text::shownPart(sound.creditLine()) : QString();
    case IsBeingNamedRole:
        return m_app.names().isLookedAt(sound.id);
    default:
        return {};
    }
}

QVariant LibraryListModel::incomingData(qsizetype row, int role) const
{
    const IncomingFile& file = m_incoming[row];
    switch (role) {
    case NameRole:
        return text::shownPart(file.name);
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

QString LibraryListModel::relatedHeading() const
{
    if (!m_session.isRelated())
        return {};
    return u"Related to “%1”: %2"_s.arg(query(), m_session.relatedWords().join(u", "_s));
}

QString LibraryListModel::nothingFound() const
{
    return query().isEmpty() || rowCount() > 0 ? QString() : u"No Results for “%1”"_s.arg(query());
}

QString LibraryListModel::footNote() const
{
    if (!query().trimmed().isEmpty())
        return u"%1 shown"_s.arg(m_session.sounds().size());
    const qsizetype marked = m_app.multi().size();
    return marked > 1 ? u"%1 marked"_s.arg(marked) : QString();
}

void LibraryListModel::followIncoming()
{
    const Incoming& incoming = m_app.incoming();
    connect(&incoming, &Incoming::added, this, [this, &incoming](int count) {
        beginInsertRows({}, incomingCount(), incomingCount() + count - 1);
        m_incoming += incoming.files().last(count);
        endInsertRows();
    });
    connect(&incoming, &Incoming::removed, this, [this](int row) {
        beginRemoveRows({}, row, row);
        m_incoming.removeAt(row);
        endRemoveRows();
    });
    connect(&incoming, &Incoming::changed, this, [this] {
        if (!m_incoming.isEmpty())
            lookAtProgress(); // the first has its turn
        m_incoming.isEmpty() ? m_progressTimer.stop() : m_progressTimer.start();
        Q_EMIT countChanged();
        Q_EMIT currentRowChanged();
    });
    m_progressTimer.setInterval(kProgressMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &LibraryListModel::lookAtProgress);
}

void LibraryListModel::lookAtProgress()
{
    Q_EMIT dataChanged(index(0), index(0), {SubtitleRole}); // one file comes in at a time
}

int LibraryListModel::currentRow() const
{
    const int index = m_session.current();
    return index < 0 ? -1 : incomingCount() + index;
}

void LibraryListModel::click(int row, int modifiers)
{
    m_session.click(indexOf(row), Qt::KeyboardModifiers(modifiers));
}

void LibraryListModel::moveTo(int row, int modifiers)
{
    m_session.moveTo(indexOf(row), Qt::KeyboardModifiers(modifiers));
}

void LibraryListModel::deleteSelected()
{
    startFlow(deleteItems(m_app, m_session.selected()));
}

QString LibraryListModel::deleteLabel(int row) const
{
    const qsizetype count = meantBy(row).size();
    return count > 1 ? u"Delete %1 Sounds"_s.arg(count) : u"Delete"_s;
}

bool LibraryListModel::isBeingNamed(const QList<SoundItem>& sounds) const
{
    return std::any_of(sounds.begin(), sounds.end(),
                       [this](const SoundItem& sound) { return m_app.names().isClaimed(sound.id); });
}

QString LibraryListModel::smartNameLabel(int row) const
{
    const QList<SoundItem> meant = meantBy(row);
    if (isBeingNamed(meant))
        return u"Stop Naming"_s;
    return meant.size() > 1 ? u"Smart Names"_s : u"Smart Name"_s;
}

void LibraryListModel::smartNameFrom(int row)
{
    const QList<SoundItem> meant = meantBy(row);
    if (isBeingNamed(meant)) {
        for (const SoundItem& sound : meant)
            m_app.names().stop(sound.id);
    } else if (!meant.isEmpty()) {
        startFlow(smartRename(m_app, meant));
    }
}

QString LibraryListModel::saveLabel(int row) const
{
    const qsizetype count = meantBy(row).size();
    return count > 1 ? u"Save %1 Sounds"_s.arg(count) : u"Save to Desktop"_s;
}

void LibraryListModel::saveFrom(int row)
{
    if (const QList<SoundItem> meant = meantBy(row); !meant.isEmpty())
        startFlow(saveToDesktop(m_app, meant));
}

void LibraryListModel::showFileOf(int row) const
{
    const qsizetype index = indexOf(row);
    if (index >= 0 && index < m_session.sounds().size())
        showFile(m_app, m_session.sounds()[index]);
}

QStringList LibraryListModel::creditsOf(int row) const
{
    QStringList credits;
    for (const SoundItem& sound : meantBy(row)) {
        if (License::needsCredit(sound.license))
            credits << sound.creditLine();
    }
    credits.removeDuplicates();
    return credits;
}

bool LibraryListModel::hasCredit(int row) const
{
    return !creditsOf(row).isEmpty();
}

QString LibraryListModel::copyCreditLabel(int row) const
{
    return creditsOf(row).size() > 1 ? u"Copy Credits"_s : u"Copy Credit"_s;
}

void LibraryListModel::copyCreditFrom(int row)
{
    const QStringList credits = creditsOf(row);
    if (credits.isEmpty())
        return;
    QGuiApplication::clipboard()->setText(credits.join(u'\n'));
    m_app.say(credits.size() == 1 ? u"Copied the credit."_s : u"Copied %1 credits."_s.arg(credits.size()));
}

void LibraryListModel::deleteFrom(int row)
{
    startFlow(deleteItems(m_app, meantBy(row)));
}

} // namespace tonequill
