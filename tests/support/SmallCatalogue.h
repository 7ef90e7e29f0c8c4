#pragma once

#include "discovery/catalogue/Inflater.h"

#include <QByteArray>
#include <QFile>
#include <QString>

namespace tonequill::test {

// The file of a small catalogue of our own making: the sounds of
// tests/data/discovery/catalogue.jsonl.
inline QByteArray smallCatalogue()
{
    QFile lines(QStringLiteral(TONEQUILL_TEST_DATA "/discovery/catalogue.jsonl"));
    if (!lines.open(QIODevice::ReadOnly))
        qFatal("the test's catalogue is missing");
    const QByteArray json = "{\"items\":[" + lines.readAll().trimmed().replace('\n', ',') + "]}";
    return QByteArray::fromStdString(Inflater::deflate(std::string_view(json.constData(), std::size_t(json.size()))));
}

} // namespace tonequill::test
