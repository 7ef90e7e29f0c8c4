#include "ui/editor/SoundActions.h"

#include "app/delivery/ExportFlows.h"
#include "app/delivery/StagingFlows.h"
#include "base/Background.h"
#include "ui/kit/DragOut.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QStyleHints>

using namespace Qt::StringLiterals;

namespace tonequill {

SoundActions::SoundActions(AppModel& app) : m_app(app)
{
    connect(&app.work(), &FlowsAtWork::changed, this, &SoundActions::isWorkingChanged);
    connect(&app.work(), &FlowsAtWork::changed, this, &SoundActions::meantChanged);
    connect(&app.selection(), &Selection::multiChanged, this, &SoundActions::meantChanged);
    const EditorModel* editor = &app.editor();
    for (const auto signal : {&EditorModel::itemChanged, &EditorModel::analysisChanged, &EditorModel::candidatesChanged})
        connect(editor, signal, this, &SoundActions::meantChanged);
}

QString SoundActions::meant() const
{
    const auto& item = m_app.editor().item();
    const qsizetype sounds = m_app.multi().size();
    const qsizetype parts = qsizetype(m_app.editor().parts().size());
    if (!item || (sounds < 2 && parts < 2))
        return {};
    const QString what =
        parts < 2 ? u"the marked part of “%1”"_s.arg(item->name) : u"the %1 marked parts of “%2”"_s.arg(parts).arg(item->name);
    return sounds < 2 ? what : what + u", the open one of %1 marked sounds"_s.arg(sounds);
}

QString SoundActions::saveText() const
{
    const auto parts = m_app.editor().parts().size();
    if (parts > 1)
        return u"Save %1 Parts"_s.arg(parts);
    return m_app.multi().size() > 1 ? u"Save Open Sound"_s : u"Save to Desktop"_s;
}

QString SoundActions::addText() const
{
    const auto parts = m_app.editor().parts().size();
    if (parts > 1)
        return u"Add %1 Parts"_s.arg(parts);
    return m_app.multi().size() > 1 ? u"Add Open Sound"_s : u"Add to Library"_s;
}

QString SoundActions::saveTip() const
{
    return meant().isEmpty() ? QString() : u"Save "_s + meant();
}

QString SoundActions::addTip() const
{
    return meant().isEmpty() ? QString() : u"Add "_s + meant();
}

bool SoundActions::canSendToFinalCut() const
{
    return tonequill::canSendToFinalCut(m_app);
}

void SoundActions::addToLibrary()
{
    if (!canAdd())
        return;
    if (m_sinceAdding.isValid() && m_sinceAdding.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval())
        return;
    m_sinceAdding.start();
    startFlow(tonequill::addToLibrary(m_app));
}

void SoundActions::saveToDesktop()
{
    if (canSave())
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

void SoundActions::copyParts()
{
    if (!canAdd())
        return;
    const StagedFiles files = stageSelectionFiles(m_app);
    if (files.paths.isEmpty())
        return m_app.say(u"Couldn't copy this part."_s, Tone::error);
    QGuiApplication::clipboard()->setMimeData(DragOut::filesOf(files.paths).release());
    m_app.say(files.paths.size() == 1 ? u"Copied “%1”. Paste it into another program."_s.arg(files.label)
                                      : u"Copied %1 sounds. Paste them into another program."_s.arg(files.paths.size()));
}

} // namespace tonequill
