#include "surfaces/Fixture.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMetaEnum>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace tonequill::test {

namespace {

QMimeData* filesOf(const QStringList& urls)
{
    auto* files = new QMimeData;
    files->setUrls(QUrl::fromStringList(urls));
    return files;
}

QList<QQuickItem*> itemsUnder(QQuickItem* item)
{
    QList<QQuickItem*> items{item};
    for (QQuickItem* child : item->childItems())
        items += itemsUnder(child);
    return items;
}

QList<QQuickItem*> stopsOf(QQuickWindow* window)
{
    QList<QQuickItem*> stops;
    for (QQuickItem* item : itemsUnder(window->contentItem())) {
        if (item->isVisible() && item->isEnabled() && item->activeFocusOnTab())
            stops << item;
    }
    return stops;
}

} // namespace

Fixture::Fixture()
{
    QAccessible::setActive(true);
    m_themes.applyFont();
    m_themes.setAppearance(Appearance::light);
}

Fixture::~Fixture() = default;

Levels Fixture::wave()
{
    Levels levels;
    for (int i = 0; i < 48; ++i)
        levels.values << (i < 3 ? 0.05f : std::exp(float(3 - i) / 12));
    return levels;
}

void Fixture::start(int count)
{
    stop();
    m_folder = std::make_unique<LibraryFolder>();
    for (int i = 1; i <= count; ++i)
        m_folder->add(u"Sound %1"_s.arg(i)).descriptors = {u"short"_s, u"hit"_s};
    m_folder->write();
    m_app = std::make_unique<AppModel>(m_defaults, m_clock, m_work, m_apps,
                                       std::make_unique<LibraryStore>(m_clock, m_folder->path()));
    m_model = std::make_unique<WindowModel>(*m_app, [this] {
        ++m_filesAskedFor;
        Q_EMIT filesAskedForChanged();
    });
    QQmlEngine::setObjectOwnership(m_model.get(), QQmlEngine::CppOwnership);
    m_filesAskedFor = 0;
    Q_EMIT modelChanged();
}

void Fixture::stop()
{
    m_model.reset();
    m_app.reset();
    m_folder.reset();
    Q_EMIT modelChanged();
}

QString Fixture::selected() const
{
    QStringList names;
    for (const SoundItem& item : m_app->selectedItems())
        names << item.name;
    return names.join(u", "_s);
}

QString Fixture::open() const
{
    return m_app->selectedItem() ? m_app->selectedItem()->name : QString();
}

void Fixture::say(const QString& text, bool isError)
{
    m_app->say(text, isError ? Tone::error : Tone::plain);
}

void Fixture::setDark(bool isDark)
{
    m_themes.setAppearance(isDark ? Appearance::dark : Appearance::light);
}

QString Fixture::sound(const QString& name) const
{
    return QUrl::fromLocalFile(writeTone(m_folder->filePath(name))).toString();
}

QString Fixture::words(const QString& name) const
{
    writeBytes(m_folder->filePath(name), "just words");
    return QUrl::fromLocalFile(m_folder->filePath(name)).toString();
}

void Fixture::rename(int row, const QString& name)
{
    m_app->library().rename(m_app->library().items()[row], name);
}

bool Fixture::dragOver(QQuickWindow* window, const QStringList& urls, double x, double y)
{
    const std::unique_ptr<QMimeData> files(filesOf(urls));
    QDragEnterEvent enter(QPoint(int(x), int(y)), Qt::CopyAction | Qt::MoveAction, files.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter);
    QDragMoveEvent move(QPoint(int(x), int(y)), Qt::CopyAction | Qt::MoveAction, files.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &move);
    return move.isAccepted();
}

void Fixture::dragLeave(QQuickWindow* window)
{
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(window, &leave);
}

void Fixture::drop(QQuickWindow* window, const QStringList& urls, double x, double y)
{
    const std::unique_ptr<QMimeData> files(filesOf(urls));
    QDropEvent drop(QPointF(x, y), Qt::CopyAction | Qt::MoveAction, files.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &drop);
}

QStringList Fixture::tabStops(QQuickWindow* window)
{
    QStringList stops;
    for (QQuickItem* item : stopsOf(window))
        stops << spoken(item);
    return stops;
}

QStringList Fixture::flaws(QQuickWindow* window)
{
    constexpr double kSmallest = 32; // pixels
    QStringList flaws;
    for (QQuickItem* item : stopsOf(window)) {
        const QString what = QString::fromLatin1(item->metaObject()->className()) + u" "_s + spoken(item);
        const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
        if (!face || face->text(QAccessible::Name).isEmpty() || face->role() == QAccessible::Client)
            flaws << u"no name or role: "_s + what;
        if (item->width() < kSmallest || item->height() < kSmallest)
            flaws << u"too small: "_s + what;
    }
    return flaws;
}

QString Fixture::spoken(QQuickItem* item)
{
    const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
    if (!face)
        return {};
    const QMetaEnum roles = QMetaEnum::fromType<QAccessible::Role>();
    QString words = QString::fromLatin1(roles.valueToKey(face->role())) + u": "_s + face->text(QAccessible::Name);
    if (face->state().selected)
        words += u", selected"_s;
    return words;
}

} // namespace tonequill::test
