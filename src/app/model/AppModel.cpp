#include "app/model/AppModel.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tonequill {

namespace {

const QString kCreateWithCredits = u"createWithCredits"_s;
const QString kShortOnlyByDefault = u"shortOnlyByDefault"_s;
const QString kHideCreditSounds = u"hideCreditSounds"_s;
const QString kAlsoFinalCut = u"alsoFinalCut"_s;
const QString kSaveFolderPath = u"saveFolderPath"_s;

} // namespace

AppModel::AppModel(const Services& services, std::unique_ptr<LibraryStore> library)
    : m_services(services),
      m_editor(services.editorWork, services.clock),
      m_library(std::move(library)),
      m_selection(*m_library),
      m_librarySession(*m_library, m_selection, services.languageModel, services.clock),
      m_autoFolder(services.defaults, services.clock, services.workers),
      m_createWithCredits(services.defaults.boolean(kCreateWithCredits).value_or(false)),
      m_shortOnlyByDefault(services.defaults.boolean(kShortOnlyByDefault).value_or(true)),
      m_hideCreditSounds(services.defaults.boolean(kHideCreditSounds).value_or(false)),
      m_alsoFinalCut(services.defaults.boolean(kAlsoFinalCut).value_or(true)),
      m_saveFolderPath(services.defaults.text(kSaveFolderPath))
{
    connect(m_library.get(), &LibraryStore::itemChanged, this,
            [this](int index) { m_editor.refresh(m_library->items()[index]); });
    m_editor.setOnHeard([this](const SoundItem& item, const SoundHeard& heard) { applyHeard(item, heard); });
    connect(&m_selection, &Selection::idChanged, this, [this] {
        openSelection();
        Q_EMIT selectionChanged();
    });
    m_selection.openNewest(); // it starts to load before the window appears
}

AppModel::~AppModel()
{
    close();
}

void AppModel::close()
{
    // The parts first: the flows wait in them.
    m_editor.close();
    m_autoFolder.close();
    m_library->close();
    m_flows.end();
}

void AppModel::setSection(AppSection section)
{
    if (section == m_section)
        return;
    m_section = section;
    Q_EMIT sectionChanged();
}

void AppModel::openSelection()
{
    const SoundItem* item = selectedItem();
    if (item)
        m_editor.load(*item, m_library->path(*item));
    else
        m_editor.load(std::nullopt, {});
}

void AppModel::say(const QString& text, Tone tone)
{
    const QUuid id = QUuid::createUuid();
    m_notice = Notice{id, text, tone == Tone::error};
    Q_EMIT noticeChanged();
    m_services.clock.after(tone == Tone::error ? 7000ms : 3500ms, [model = QPointer(this), id] {
        if (!model || !model->m_notice || model->m_notice->id != id)
            return;
        model->m_notice.reset();
        Q_EMIT model->noticeChanged();
    });
}

QString AppModel::workingText() const
{
    const auto newest =
        std::find_if(m_flowsAtWork.rbegin(), m_flowsAtWork.rend(), [](const QString& text) { return !text.isEmpty(); });
    return newest == m_flowsAtWork.rend() ? QString() : *newest;
}

AppModel::Working::Working(AppModel& model, const QString& text) : m_model(model), m_text(text)
{
    m_model.m_flowsAtWork << text;
    if (m_model.m_flowsAtWork.size() == 1)
        Q_EMIT m_model.isWorkingChanged();
    if (!text.isEmpty())
        Q_EMIT m_model.workingTextChanged();
}

AppModel::Working::~Working()
{
    m_model.m_flowsAtWork.removeOne(m_text);
    if (m_model.m_flowsAtWork.isEmpty())
        Q_EMIT m_model.isWorkingChanged();
    if (!m_text.isEmpty())
        Q_EMIT m_model.workingTextChanged();
}

void AppModel::setCreateWithCredits(bool value)
{
    m_createWithCredits = value;
    m_services.defaults.setBoolean(kCreateWithCredits, value);
    Q_EMIT settingsChanged();
}

void AppModel::setShortOnlyByDefault(bool value)
{
    m_shortOnlyByDefault = value;
    m_services.defaults.setBoolean(kShortOnlyByDefault, value);
    Q_EMIT settingsChanged();
}

void AppModel::setHideCreditSounds(bool value)
{
    m_hideCreditSounds = value;
    m_services.defaults.setBoolean(kHideCreditSounds, value);
    Q_EMIT settingsChanged();
}

void AppModel::setAlsoFinalCut(bool value)
{
    m_alsoFinalCut = value;
    m_services.defaults.setBoolean(kAlsoFinalCut, value);
    Q_EMIT settingsChanged();
}

void AppModel::setSaveFolderPath(std::optional<QString> path)
{
    m_saveFolderPath = std::move(path);
    if (m_saveFolderPath)
        m_services.defaults.setText(kSaveFolderPath, *m_saveFolderPath);
    else
        m_services.defaults.remove(kSaveFolderPath);
    Q_EMIT settingsChanged();
}

QString AppModel::saveFolder() const
{
    return saveFolder(m_services.defaults);
}

QString AppModel::saveFolder(const Defaults& defaults)
{
    const auto chosen = defaults.text(kSaveFolderPath);
    if (chosen && QFileInfo::exists(*chosen))
        return *chosen;
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

} // namespace tonequill
