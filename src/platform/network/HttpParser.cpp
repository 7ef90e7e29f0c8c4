#include "platform/network/HttpParser.h"

#include <algorithm>

namespace tonequill {

namespace {

// A number without sign or blanks; none if it is no such number or a mad one.
std::optional<qint64> numberIn(const QByteArray& text, int base)
{
    constexpr qsizetype kMostDigits = 15; // fits, whatever the base
    const auto isDigit = [base](char c) {
        const bool isHex = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        return (c >= '0' && c <= '9') || (base == 16 && isHex);
    };
    if (text.isEmpty() || text.size() > kMostDigits || !std::all_of(text.begin(), text.end(), isDigit))
        return std::nullopt;
    return text.toLongLong(nullptr, base);
}

} // namespace

std::optional<QByteArray> HttpParser::header(const QByteArray& name) const
{
    for (const auto& [own, value] : m_headers) {
        if (own == name)
            return value;
    }
    return std::nullopt;
}

HttpParser::State HttpParser::take(const QByteArray& bytes)
{
    if (m_state == State::done || m_state == State::broken)
        return m_state;
    m_in += bytes;
    if (m_state == State::head)
        readHead();
    if (m_state == State::body)
        readBody();
    m_in.remove(0, m_at);
    m_at = 0;
    return m_state;
}

HttpParser::State HttpParser::end()
{
    if (m_state == State::body && m_framing == Framing::untilTheEnd)
        m_state = State::done;
    else if (m_state != State::done)
        fail();
    return m_state;
}

std::optional<QByteArray> HttpParser::takeLine()
{
    const qsizetype end = m_in.indexOf('\n', m_at);
    const qsizetype taken = (end < 0 ? m_in.size() : end + 1) - m_at;
    if (m_headBytes + taken > kMostHead) {
        fail();
        return std::nullopt;
    }
    if (end < 0)
        return std::nullopt;
    m_headBytes += taken;
    QByteArray line = m_in.mid(m_at, end - m_at);
    if (line.endsWith('\r'))
        line.chop(1);
    m_at = end + 1;
    return line;
}

bool HttpParser::readStatusLine(const QByteArray& line)
{
    if (!line.startsWith("HTTP/1.") || line.size() < 12 || line[8] != ' ' || (line.size() > 12 && line[12] != ' '))
        return false;
    m_status = int(numberIn(line.mid(9, 3), 10).value_or(0));
    return m_status >= 100;
}

void HttpParser::readHead()
{
    while (m_state == State::head) {
        const auto line = takeLine();
        if (!line)
            return;
        if (m_status == 0) {
            if (!readStatusLine(*line))
                return fail();
        } else if (!line->isEmpty()) {
            const qsizetype colon = line->indexOf(':');
            if (colon <= 0)
                return fail();
            m_headers.append({line->left(colon).trimmed().toLower(), line->mid(colon + 1).trimmed()});
        } else if (m_status < 200) { // an interim answer: the real one follows
            m_status = 0;
            m_headers.clear();
        } else {
            chooseFraming();
        }
    }
}

void HttpParser::chooseFraming()
{
    const QByteArray packing = header("content-encoding").value_or(QByteArray()).toLower();
    if (!packing.isEmpty() && packing != "identity")
        return fail(); // we didn't ask for it
    m_state = State::body;
    if (m_status == 204 || m_status == 304) {
        m_state = State::done;
    } else if (const auto transfer = header("transfer-encoding")) {
        if (transfer->toLower() != "chunked")
            return fail();
        m_framing = Framing::chunks;
    } else if (const auto length = header("content-length")) {
        const auto bytes = numberIn(*length, 10);
        if (!bytes || *bytes > m_largestBody)
            return fail();
        m_framing = Framing::length;
        m_left = *bytes;
    }
}

void HttpParser::addToBody(qsizetype bytes)
{
    if (m_body.size() + bytes > m_largestBody)
        return fail();
    m_body += m_in.mid(m_at, bytes);
    m_at += bytes;
}

void HttpParser::readBody()
{
    const qsizetype there = m_in.size() - m_at;
    switch (m_framing) {
    case Framing::untilTheEnd:
        addToBody(there);
        break;
    case Framing::length: {
        const qsizetype bytes = qsizetype(std::min<qint64>(there, m_left));
        m_left -= bytes;
        addToBody(bytes);
        if (m_state == State::body && m_left == 0)
            m_state = State::done;
        break;
    }
    case Framing::chunks:
        readChunks();
        break;
    }
}

void HttpParser::readChunks()
{
    while (m_state == State::body) {
        if (m_chunk == Chunk::data) {
            const qsizetype bytes = qsizetype(std::min<qint64>(m_in.size() - m_at, m_left));
            m_left -= bytes;
            addToBody(bytes);
            if (m_left > 0)
                return;
            m_chunk = Chunk::dataEnd;
            continue;
        }
        const qsizetype headBefore = m_headBytes;
        const auto line = takeLine();
        if (!line)
            return;
        switch (m_chunk) {
        case Chunk::size: {
            const auto bytes = numberIn(line->left(line->indexOf(';') < 0 ? line->size() : line->indexOf(';')).trimmed(), 16);
            if (!bytes || *bytes > m_largestBody - m_body.size())
                return fail();
            m_left = *bytes;
            m_chunk = *bytes == 0 ? Chunk::trailer : Chunk::data;
            m_headBytes = headBefore; // as many as there are chunks; the body's cap holds them
            break;
        }
        case Chunk::dataEnd:
            if (!line->isEmpty())
                return fail();
            m_chunk = Chunk::size;
            m_headBytes = headBefore;
            break;
        case Chunk::trailer:
            if (line->isEmpty())
                m_state = State::done;
            break;
        case Chunk::data:
            Q_UNREACHABLE();
        }
    }
}

} // namespace tonequill
