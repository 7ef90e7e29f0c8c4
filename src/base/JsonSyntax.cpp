#include "base/JsonSyntax.h"

#include <QStringDecoder>

namespace tonequill {

namespace {

constexpr int kDeepest = 500;

bool isDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

// Reads from the front; each function says whether it has read what it is called for.
class Reader {
public:
    explicit Reader(QByteArrayView bytes) : m_rest(bytes) {}

    bool document() { return value(0) && m_rest.isEmpty(); }

private:
    char front() const { return m_rest.isEmpty() ? '\0' : m_rest.front(); }

    bool take(char letter)
    {
        if (m_rest.isEmpty() || m_rest.front() != letter)
            return false;
        m_rest = m_rest.sliced(1);
        return true;
    }

    bool word(QByteArrayView expected)
    {
        if (!m_rest.startsWith(expected))
            return false;
        m_rest = m_rest.sliced(expected.size());
        return true;
    }

    void space()
    {
        while (take(' ') || take('\t') || take('\n') || take('\r')) {
        }
    }

    bool value(int depth)
    {
        if (depth > kDeepest)
            return false;
        space();
        const bool isRead = front() == '{'   ? members(depth)
                            : front() == '[' ? elements(depth)
                            : front() == '"' ? string()
                                             : word("true") || word("false") || word("null") || number();
        space();
        return isRead;
    }

    bool members(int depth)
    {
        take('{');
        space();
        if (take('}'))
            return true;
        do {
            space();
            if (!string())
                return false;
            space();
            if (!take(':') || !value(depth + 1))
                return false;
        } while (take(','));
        return take('}');
    }

    bool elements(int depth)
    {
        take('[');
        space();
        if (take(']'))
            return true;
        do {
            if (!value(depth + 1))
                return false;
        } while (take(','));
        return take(']');
    }

    bool string()
    {
        if (!take('"'))
            return false;
        while (!m_rest.isEmpty() && front() != '"') {
            if (static_cast<unsigned char>(front()) < 0x20)
                return false;
            if (!take('\\'))
                m_rest = m_rest.sliced(1);
            else if (!escape())
                return false;
        }
        return take('"');
    }

    bool escape()
    {
        if (!take('u')) {
            const bool isKnown = !m_rest.isEmpty() && QByteArrayView("\"\\/bfnrt").contains(front());
            return isKnown && take(front());
        }
        for (int i = 0; i < 4; ++i) {
            const char letter = front();
            const bool isHex = isDigit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
            if (!isHex || !take(letter))
                return false;
        }
        return true;
    }

    bool digits()
    {
        if (!isDigit(front()))
            return false;
        while (isDigit(front()))
            m_rest = m_rest.sliced(1);
        return true;
    }

    bool number()
    {
        take('-');
        if (!take('0') && !digits())
            return false;
        if (take('.') && !digits())
            return false;
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            return digits();
        }
        return true;
    }

    QByteArrayView m_rest;
};

} // namespace

bool isJson(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return !text.isEmpty() && !decoder.hasError() && Reader(bytes).document();
}

} // namespace tonequill
