#include "base/Text.h"
#include "indexing/Commands.h"

#include <cstdio>

namespace tonequill::indexing {

namespace {

void put(std::FILE* stream, const QByteArray& text)
{
    const QByteArray bytes = text + '\n';
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

void print(const QString& line)
{
    put(stdout, text::plainLine(line).toUtf8());
}

void complain(const QString& line)
{
    put(stderr, text::plainLine(line).toUtf8());
}

void printJson(const QByteArray& document)
{
    put(stdout, document);
}

} // namespace tonequill::indexing
