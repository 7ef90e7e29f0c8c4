#pragma once

#include <QString>

#include <optional>

// Files on their way out of the program: the library's own have no readable
// names, so that each sound that is dragged gets a folder of its own with a copy
// under its name. They stay until the next start, because a program that took a
// drop may read it long after. Any thread.
namespace tonequill::DragStaging {

// The folder of them all, in the user's cache.
QString root();

// A copy of a file under that display name; none if it can't be made.
std::optional<QString> stage(const QString& copyOf, const QString& named);

// The path of a file under that display name that is yet to be written; none if
// its folder can't be made.
std::optional<QString> reserve(const QString& named, const QString& fileExtension);

// Removes all of them. Only at start, before any drag.
void clean();

// True for a path in the staging folder: of a drag that comes from this program.
bool holds(const QString& path);

} // namespace tonequill::DragStaging
