#include "ui/window/WindowModel.h"

namespace tonequill {

static_assert(int(AppSection::library) == WindowModel::Library && int(AppSection::find) == WindowModel::Discover &&
              int(AppSection::studio) == WindowModel::Studio && int(AppSection::generate) == WindowModel::Create);

WindowModel::WindowModel(AppModel& app, std::function<void()> askForFiles)
    : m_app(app),
      m_library(app),
      m_files(app, m_library, std::move(askForFiles)),
      m_sound(app),
      m_soundActions(app),
      m_autoFolder(app.autoFolder())
{
    connect(&app, &AppModel::sectionChanged, this, &WindowModel::sectionChanged);
    connect(&app.notices(), &Notices::changed, this, &WindowModel::noticeChanged);
    connect(&app.work(), &FlowsAtWork::changed, this, &WindowModel::workingTextChanged);
}

SettingsView* WindowModel::settings()
{
    if (!m_settings)
        m_settings = std::make_unique<SettingsView>(m_app, ThemeStore::shared());
    return m_settings.get();
}

} // namespace tonequill
