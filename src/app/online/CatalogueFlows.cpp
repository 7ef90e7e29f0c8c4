#include "app/online/CatalogueFlows.h"

#include "discovery/catalogue/SoundIndex.h"

namespace tonequill {

QCoro::Task<std::int32_t> loadCatalogue(AppModel& model)
{
    SoundIndex& index = model.services().soundIndex;
    const auto load = index.startLoadingIfNeeded(model.services().workers);
    if (load)
        co_await load->toldWhenEnded(model.flows());
    model.setSearchableCount(index.soundCount());
    co_return index.soundCount();
}

} // namespace tonequill
