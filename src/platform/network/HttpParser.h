#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace tonequill {

// Reads an answer of HTTP/1.1 as it comes in, in pieces of any size. Nothing in it is believed:
// heads are capped at kMostHead bytes, bodies as the caller says.
class HttpParser {
public:
    static constexpr qsizetype kMostHead = 64 * 1024;

    enum class State : std::uint8_t { head, body, done, broken };

    explicit HttpParser(qint64 largestBody) : m_largestBody(largestBody) {}

    State take(const QByteArray& bytes);
    // Nothing more comes.
    State end();

    State state() const { return m_state; }
    int status() const { return m_status; }
    // The first header of the name, which is given in lower case.
    std::optional<QByteArray> header(const QByteArray& name) const;
    const QByteArray& body() const { return m_body; }

private:
    enum class Framing : std::uint8_t { length, chunks, untilTheEnd };
    enum class Chunk : std::uint8_t { size, data, dataEnd, trailer };

    void readHead();
    bool readStatusLine(const QByteArray& line);
    void chooseFraming();
    void readBody();
    void readChunks();
    // The line that begins at m_at, without its end; none before it is whole.
    std::optional<QByteArray> takeLine();
    void addToBody(qsizetype bytes);
    void fail() { m_state = State::broken; }

    qint64 m_largestBody;
    State m_state = State::head;
    Framing m_framing = Framing::untilTheEnd;
    Chunk m_chunk = Chunk::size;
    QByteArray m_in; // not read yet
    qsizetype m_at = 0;
    qsizetype m_headBytes = 0; // of all heads, those of interim answers and trailers among them
    int m_status = 0;
    QList<std::pair<QByteArray, QByteArray>> m_headers;
    qint64 m_left = 0; // of the length, or of the chunk
    QByteArray m_body;
};

} // namespace tonequill
