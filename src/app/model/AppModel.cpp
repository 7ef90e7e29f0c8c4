#include "app/model/AppModel.h"

using namespace Qt::StringLiterals;

namespace tonequill {

AppModel::AppModel(const Services& services, std::unique_ptr<LibraryStore> library)
    : m_services(services),
      m_settings(services.defaults),
      m_notices(services.clock),
      m_editor(services.editorWork, services.clock),
      m_library(std::move(library)),
      m_selection(*m_library),
      m_librarySession(*m_library, m_selection, services.languageModel, services.clock),
      m_autoFolder(services.defaults, services.clock, services.workers)
{
    connect(m_library.get(), &LibraryStore::itemChanged, this,
            [this](int index) { m_editor.refresh(m_library->items()[index]); });
    connect(&m_settings, &Settings::changed, this, [this] {
        if (!m_services.defaults.isSaved())
            say(u"The settings could not be saved: the disk may be full or read-only."_s, Tone::error);
    });
    connect(&m_selection, &Selection::idChanged, this, [this] {
        m_names.forgetQuestion();
        openSelection();
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
    m_library->isSaved(); // what they handed over on their way out, too
}

void AppModel::setSection(AppSection section)
{
    if (section == m_section)
        return;
    m_section = section;
    Q_EMIT sectionChanged();
}

void AppModel::setSearchableCount(std::int32_t count)
{
    if (count == m_searchableCount)
        return;
    m_searchableCount = count;
    Q_EMIT searchableCountChanged();
}

void AppModel::openSelection()
{
    const SoundItem* item = selectedItem();
    if (item)
        m_editor.load(*item, m_library->path(*item));
    else
        m_editor.load(std::nullopt, {});
}

} // namespace tonequill
