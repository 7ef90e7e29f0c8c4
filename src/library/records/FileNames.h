#pragma once

#include <QString>

namespace tonequill::FileNames {

// A display name made usable as a file name, without an extension: separators
// and wildcards become dashes, control characters blanks, at most 80 characters,
// "Sound" if nothing is left. Scripts, accents and dots stay. The file system's limit in bytes is
// kept by Files::fittingName.
QString safe(const QString& name);

} // namespace tonequill::FileNames
