#include "ui/editor/VoicesModel.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// The glyphs of resources/icons, in the order of the styles.
constexpr std::array kIcons = {u"person-wave", u"person-low", u"person-high", u"child",    u"giant",
                               u"robot",       u"alien",      u"phone",       u"megaphone"};
static_assert(kIcons.size() == kVoiceStyles.size());

} // namespace

VoicesModel::VoicesModel(EditorModel& editor) : m_editor(editor), m_shown(editor.effects().voice)
{
    connect(&editor, &EditorModel::effectsChanged, this, &VoicesModel::follow);
}

int VoicesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(kVoiceStyles.size());
}

QHash<int, QByteArray> VoicesModel::roleNames() const
{
    return {{LabelRole, "label"}, {IconRole, "glyph"}, {HintRole, "hint"}, {CurrentRole, "isCurrent"}};
}

QVariant VoicesModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const VoiceStyle style = kVoiceStyles[std::size_t(index.row())];
    switch (role) {
    case LabelRole:
        return labelOf(style);
    case IconRole:
        return QString::fromUtf16(kIcons[std::size_t(index.row())]);
    case HintRole:
        return hintOf(style);
    case CurrentRole:
        return style == m_shown;
    default:
        return {};
    }
}

void VoicesModel::choose(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    EffectSettings effects = m_editor.effects();
    effects.voice = kVoiceStyles[std::size_t(row)];
    m_editor.setEffects(effects);
}

void VoicesModel::follow()
{
    if (m_editor.effects().voice == m_shown)
        return;
    m_shown = m_editor.effects().voice;
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {CurrentRole});
    Q_EMIT chosenChanged();
}

} // namespace tonequill
