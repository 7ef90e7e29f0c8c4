#pragma once

#include <QStringList>

// What tonequill-index does. Each returns the exit status: 0 done, 1 failed, 2 wrong use.
namespace tonequill::indexing {

int build(const QStringList& arguments);
int merge(const QStringList& arguments);
int check(const QStringList& arguments);
int stats(const QStringList& arguments);

// A line to stdout, and a sentence to stderr, without what a terminal would obey.
void print(const QString& line);
void complain(const QString& line);
void printJson(const QByteArray& document);

} // namespace tonequill::indexing
