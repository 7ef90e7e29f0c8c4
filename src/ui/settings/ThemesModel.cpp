#include "ui/settings/ThemesModel.h"

namespace tonequill {

ThemesModel::ThemesModel(ThemeStore& store) : m_store(store), m_current(lookUpCurrent())
{
    connect(&store, &ThemeStore::changed, this, &ThemesModel::follow);
}

int ThemesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_store.all().size());
}

QHash<int, QByteArray> ThemesModel::roleNames() const
{
    return {{NameRole, "name"}, {StartRole, "start"}, {EndRole, "end"}, {AccentRole, "accent"}, {CurrentRole, "isCurrent"}};
}

QVariant ThemesModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const AppTheme& theme = m_store.all()[index.row()];
    switch (role) {
    case NameRole:
        return theme.name;
    case StartRole:
        return theme.start;
    case EndRole:
        return theme.end;
    case AccentRole:
        return m_store.theme().isDark() ? theme.dark.accent : theme.light.accent;
    case CurrentRole:
        return index.row() == m_current;
    default:
        return {};
    }
}

void ThemesModel::choose(int row)
{
    if (row >= 0 && row < rowCount())
        m_store.setThemeID(m_store.all()[row].id);
}

int ThemesModel::lookUpCurrent() const
{
    const auto& themes = m_store.all();
    const auto found =
        std::find_if(themes.begin(), themes.end(), [&](const AppTheme& each) { return each.id == m_store.themeID(); });
    return found == themes.end() ? 0 : int(found - themes.begin());
}

void ThemesModel::follow()
{
    m_current = lookUpCurrent();
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {AccentRole, CurrentRole});
    Q_EMIT currentChanged();
}

} // namespace tonequill
