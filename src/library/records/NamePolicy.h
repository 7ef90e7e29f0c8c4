#pragma once

#include <QString>

namespace tonequill::NamePolicy {

// True for a name that says nothing (a camera's file name, an untitled capture)
// and may therefore be replaced; false for one that somebody chose.
bool isGeneric(const QString& name);

} // namespace tonequill::NamePolicy
