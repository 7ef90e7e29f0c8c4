#include "ui/editor/SoundActions.h"

#include "app/delivery/ExportFlows.h"
#include "app/delivery/StagingFlows.h"
#include "base/Background.h"
#include "ui/kit/DragOut.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace tonequill {

SoundActions::SoundActions(AppModel& app) : m_app(app)
{
    connect(&app.work(), &FlowsAtWork::changed, this, &SoundActions::isWorkingChanged);
}

bool SoundActions::canSendToFinalCut() const
{
    return tonequill::canSendToFinalCut(m_app);
}

void SoundActions::addToLibrary()
{
    if (m_sinceAdding.isValid() && m_sinceAdding.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval())
        return;
    m_sinceAdding.start();
    startFlow(tonequill::addToLibrary(m_app));
}

void SoundActions::saveToDesktop()
{
    startFlow(tonequill::saveToDesktop(m_app));
}

void SoundActions::sendToFinalCut()
{
    if (const SoundItem* item = m_app.selectedItem())
        startFlow(tonequill::sendToFinalCut(m_app, {*item}));
}

void SoundActions::dragParts(QQuickItem* from)
{
    const StagedFiles files = stageSelectionFiles(m_app);
    DragOut::startLater(from, files.paths, files.label);
}

} // namespace tonequill
