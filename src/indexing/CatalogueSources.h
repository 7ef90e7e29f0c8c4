#pragma once

#include "indexing/CatalogueEntry.h"

#include <QByteArray>
#include <QString>

#include <functional>

// Reads lists of sounds that people keep. Nothing in them is believed. Pure.
namespace tonequill::CatalogueSources {

// Takes what is wrong with a line, from 1; the line is left out.
using TakeFault = std::function<void(qsizetype line, const QString& sentence)>;

// One item a line, as it stands in the file of a catalogue. Empty lines are skipped.
void readJsonLines(const QByteArray& text, const TakeEntry& take, const TakeFault& fault);

// Comma-separated values (RFC 4180) in UTF-8. The first row names the columns: those of the
// file, or in words: id, title, url, tags, duration, license, creator, page, source, popularity.
// Tags are separated by ";". A column that isn't known is skipped.
void readCsv(const QByteArray& text, const TakeEntry& take, const TakeFault& fault);

// The file of a catalogue.
CatalogueReader::Outcome readCatalogue(const QByteArray& file, const TakeEntry& take);

} // namespace tonequill::CatalogueSources
