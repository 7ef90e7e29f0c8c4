#pragma once

#include "app/model/AppModel.h"

namespace tonequill {

// Has the catalogue of free sounds loaded behind, before anybody searches, and tells the
// model how many sounds it can find. Returns that.
QCoro::Task<std::int32_t> loadCatalogue(AppModel& model);

} // namespace tonequill
