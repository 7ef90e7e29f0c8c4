#pragma once

#include "discovery/catalogue/CatalogueReader.h"

#include <QString>

namespace tonequill::indexing {

// What the program would make of a file, in a sentence.
QString sentenceFor(CatalogueReader::Outcome outcome);

} // namespace tonequill::indexing
