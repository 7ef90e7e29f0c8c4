#include "ui/editor/PartsModel.h"

#include "base/TimeText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tonequill {

QString PartChip::bareTitle(const CutCandidate& candidate, int index)
{
    if (candidate.isBest)
        return u"Best match"_s;
    return candidate.isWhole ? u"Whole sound"_s : u"Option %1"_s.arg(index + 1);
}

QString PartChip::title(const CutCandidate& candidate, int index)
{
    const QString title = bareTitle(candidate, index);
    return candidate.label ? title + u" · "_s + *candidate.label : title;
}

PartsModel::PartsModel(EditorModel& editor) : m_editor(editor), m_shown(editor.candidates())
{
    connect(&editor, &EditorModel::candidatesChanged, this, &PartsModel::follow);
}

void PartsModel::follow()
{
    const std::vector<CutCandidate>& now = m_editor.candidates();
    const auto isSame = [](const CutCandidate& a, const CutCandidate& b) { return a.id == b.id; };
    if (std::equal(now.begin(), now.end(), m_shown.begin(), m_shown.end(), isSame)) { // other marks or labels
        m_shown = now;
        if (!m_shown.empty())
            Q_EMIT dataChanged(index(0), index(count() - 1));
        return;
    }
    beginResetModel();
    m_shown = now;
    endResetModel();
    Q_EMIT countChanged();
}

QHash<int, QByteArray> PartsModel::roleNames() const
{
    return {{TitleRole, "title"}, {BareTitleRole, "bareTitle"}, {LengthRole, "length"}, {MarkedRole, "marked"},
            {BestRole, "best"},   {WholeRole, "whole"},         {StartRole, "start"},   {EndRole, "end"}};
}

QVariant PartsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const CutCandidate& part = m_shown[std::size_t(index.row())];
    switch (role) {
    case TitleRole:
        return PartChip::title(part, index.row());
    case BareTitleRole:
        return PartChip::bareTitle(part, index.row());
    case LengthRole:
        return TimeText::length(part.end - part.start);
    case MarkedRole:
        return m_editor.marked().contains(part.id);
    case BestRole:
        return part.isBest;
    case WholeRole:
        return part.isWhole;
    case StartRole:
        return part.start;
    case EndRole:
        return part.end;
    default:
        return {};
    }
}

void PartsModel::choose(int row, int modifiers)
{
    if (row < 0 || row >= count())
        return;
    const CutCandidate chosen = m_shown[std::size_t(row)];
    const bool extends = (modifiers & int(Qt::ControlModifier)) != 0;
    m_editor.choose(chosen, extends ? EditorModel::Extend::yes : EditorModel::Extend::no);
}

} // namespace tonequill
