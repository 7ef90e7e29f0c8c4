#include "ui/editor/SoundActions.h"

#include "base/Background.h"
#include "ui/kit/DragOut.h"

namespace tonequill {

SoundActions::SoundActions(AppModel& app) : m_app(app)
{
    connect(&app, &AppModel::isWorkingChanged, this, [this] {
        m_isAdding = m_isAdding && isWorking();
        Q_EMIT isWorkingChanged();
    });
}

void SoundActions::addToLibrary()
{
    m_isAdding = true;
    startFlow(m_app.addToLibrary());
}

void SoundActions::saveToDesktop()
{
    startFlow(m_app.saveToDesktop());
}

void SoundActions::sendToFinalCut()
{
    if (const SoundItem* item = m_app.selectedItem())
        startFlow(m_app.sendToFinalCut({*item}));
}

void SoundActions::dragParts(QQuickItem* from)
{
    const AppModel::StagedFiles files = m_app.stageSelectionFiles();
    DragOut::startLater(from, files.paths, files.label);
}

} // namespace tonequill
