#pragma once

#include <QByteArray>

namespace tonequill::test {

// A variable of the environment for as long as this lives.
class Environment {
public:
    Environment(const char* name, const QByteArray& value)
        : m_name(name),
          m_before(qgetenv(name)),
          m_was(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~Environment()
    {
        if (m_was)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* m_name;
    QByteArray m_before;
    bool m_was;
};

} // namespace tonequill::test
