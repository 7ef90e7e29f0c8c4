#pragma once

#include <QByteArray>

// The ways to give a file another name without ever replacing what has that name. Not
// every file system knows each of them; Files::renameToFree() takes the first that
// works. Each returns 0, or the errno of the failure, EEXIST where the name is taken;
// paths are those of the system. Any thread.
namespace tonequill::FreeRename {

// Nothing to be seen in between. The local file systems know it.
int inOneStep(const QByteArray& from, const QByteArray& to);

// A second name, and then the first one goes. A kill in between leaves both. For
// network folders that know hard links.
int byLink(const QByteArray& from, const QByteArray& to);

// An empty file takes the name and is replaced. For what is left; it is safe as long
// as nobody replaces that empty file meanwhile.
int byReservation(const QByteArray& from, const QByteArray& to);

// Whether a way failed because the file system doesn't know it.
bool isUnknown(int failure);

} // namespace tonequill::FreeRename
