#include "surfaces/Fixture.h"
#include "app/library/ImportFlows.h"

#include <QAccessible>
#include <QClipboard>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
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
    for (const QString& key : {u"autoFolderOn"_s, u"autoFolderName"_s, u"autoFolderBookmark"_s})
        m_machine.defaults.remove(key);
    m_folder = std::make_unique<LibraryFolder>();
    for (int i = 1; i <= count; ++i)
        m_folder->add(u"Sound %1"_s.arg(i)).descriptors = {u"short"_s, u"hit"_s};
    m_folder->write();
    m_app = std::make_unique<AppModel>(m_machine.services(m_work), m_machine.library(m_folder->path()));
    makeModel();
}

void Fixture::makeModel()
{
    m_model = std::make_unique<WindowModel>(*m_app, [this] {
        ++m_filesAskedFor;
        Q_EMIT filesAskedForChanged();
    });
    QQmlEngine::setObjectOwnership(m_model.get(), QQmlEngine::CppOwnership);
    m_filesAskedFor = 0;
    Q_EMIT modelChanged();
}

void Fixture::startEditing()
{
    stop();
    m_openSound = std::make_unique<OpenSound>();
    m_player = std::make_shared<FakeAudioPlayer>(10);
    m_openSound->work.openings.back().answer(m_player);
    m_openSound->finishWithThree();
    m_openSound->view.reset();
    m_app = std::move(m_openSound->app);
    makeModel();
}

void Fixture::startLoading()
{
    stop();
    m_openSound = std::make_unique<OpenSound>();
    m_player = std::make_shared<FakeAudioPlayer>(10);
    m_openSound->work.openings.back().answer(m_player);
    Machine::settle();
    m_openSound->view.reset();
    m_app = std::move(m_openSound->app);
    makeModel();
}

void Fixture::analyse()
{
    AudioAnalysis analysis;
    analysis.duration = 10;
    analysis.sampleRate = 48000;
    analysis.hopSeconds = 0.01;
    analysis.peak.assign(1000, 0.01f);
    for (const std::size_t hit : {300U, 600U}) // two events in a quiet room
        std::fill_n(analysis.peak.begin() + std::ptrdiff_t(hit), 60, 0.8f);
    analysis.rms = analysis.peak;
    m_openSound->work.analyses.back().answer(analysis);
    Machine::settle();
}

void Fixture::label()
{
    std::vector<CutCandidate> parts = m_app->editor().candidates();
    for (CutCandidate& part : parts)
        part.label = u"Slam"_s;
    m_openSound->work.labellings.back().answer(std::move(parts));
}

QString Fixture::editor() const
{
    const EditorModel& editor = m_app->editor();
    QString state = QString::asprintf("%.2f-%.2f marked %d", editor.start(), editor.end(), int(editor.marked().size()));
    if (editor.cursor())
        state += QString::asprintf(" cursor %.2f", *editor.cursor());
    if (editor.isRendering())
        state += u" rendering"_s;
    else if (editor.isPlaying())
        state += u" playing"_s;
    if (editor.loop())
        state += u" loop"_s;
    return state;
}

QString Fixture::effects() const
{
    return QString::fromUtf8(m_app->editor().effects().toJson());
}

QString Fixture::record() const
{
    const SoundItem* item = m_app->selectedItem();
    return item->name + u": "_s + item->tags.join(u", "_s);
}

void Fixture::answerHearing()
{
    m_openSound->work.hearings.back().answer({{u"slam"_s, 0.92}, {u"door"_s, 0.3}});
}

void Fixture::answerHearingWithNothing()
{
    m_openSound->work.hearings.back().answer({});
}

void Fixture::failEffects()
{
    m_openSound->work.renders.back().fail(std::runtime_error("no"));
}

void Fixture::play(double seconds)
{
    m_player->time = seconds;
    m_openSound->clock.advance(std::chrono::milliseconds(16));
}

void Fixture::stop()
{
    m_model.reset();
    m_app.reset();
    m_openSound.reset();
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

QString Fixture::setting(const QString& key) const
{
    return Defaults(m_machine.defaults.path()).text(key).value_or(QString());
}

void Fixture::resetSettings()
{
    for (const QString& key : {u"shortOnlyByDefault"_s, u"hideCreditSounds"_s, u"alsoFinalCut"_s, u"saveFolderPath"_s})
        m_machine.defaults.remove(key);
    m_themes.setThemeID(u"aurora"_s);
    m_themes.setAppearance(Appearance::light);
    m_machine.apps = FakeOtherApps();
}

void Fixture::deleteFirst()
{
    deleteItems(*m_app, {m_app->library().items().first()});
}

void Fixture::answerRelated(const QStringList& words)
{
    m_machine.languageModel.answer = QJsonObject{{u"meaning"_s, u"something"_s}, {u"tags"_s, QJsonArray::fromStringList(words)}};
}

void Fixture::chooseAutoFolder(const QString& name)
{
    QDir().mkpath(m_folder->filePath(name));
    m_app->autoFolder().chooseFolder(m_folder->filePath(name));
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

void Fixture::license(int row, const QString& license, const QString& credit)
{
    m_app->library().update(SoundItem(m_app->library().items()[row]), [&](SoundItem& item) {
        item.license = license;
        item.credit = credit;
    });
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

void Fixture::hold(QQuickWindow* window, int key, int repeats)
{
    const auto send = [window, key](QEvent::Type type, bool isRepeated) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeated);
        QCoreApplication::sendEvent(window, &event);
    };
    send(QEvent::KeyPress, false);
    for (int i = 0; i < repeats; ++i) { // as an X server repeats
        send(QEvent::KeyRelease, true);
        send(QEvent::KeyPress, true);
    }
    send(QEvent::KeyRelease, false);
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

QStringList Fixture::stopsUnder(QQuickItem* item)
{
    const QRectF place = item->mapRectToScene(item->boundingRect());
    QStringList under;
    for (QQuickItem* stop : stopsOf(item->window())) {
        if (stop->mapRectToScene(stop->boundingRect()).intersects(place))
            under << spoken(stop);
    }
    return under;
}

QString Fixture::valueOf(QQuickItem* item)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
    const QAccessibleValueInterface* value = face ? face->valueInterface() : nullptr;
    return value ? u"%1 of %2 to %3"_s.arg(value->currentValue().toDouble())
                       .arg(value->minimumValue().toDouble())
                       .arg(value->maximumValue().toDouble())
                 : QString();
}

bool Fixture::setValue(QQuickItem* item, double value)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
    QAccessibleValueInterface* slider = face ? face->valueInterface() : nullptr;
    if (slider)
        slider->setCurrentValue(value);
    return slider != nullptr;
}

bool Fixture::press(QQuickItem* item)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
    QAccessibleActionInterface* actions = face ? face->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(QAccessibleActionInterface::pressAction()))
        return false;
    actions->doAction(QAccessibleActionInterface::pressAction());
    return true;
}

QString Fixture::clipboard()
{
    return QGuiApplication::clipboard()->text();
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
