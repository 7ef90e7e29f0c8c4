#pragma once

#include "base/UserError.h"

namespace tonequill {

// Why a file could not become a sound. Carries the sound's display name.
class ImportError : public UserError {
public:
    enum class Kind { noAudio, unsupported };

    static ImportError noAudio(const QString& name) { return {Kind::noAudio, name, {}}; }
    // `cause`: a sentence for what is no sound because it can't even be read: a folder,
    // a file that isn't there.
    static ImportError unsupported(const QString& name, const QString& cause = {}) { return {Kind::unsupported, name, cause}; }

    Kind kind() const { return m_kind; }
    // What is the matter, where the message doesn't say it; empty else.
    const QString& cause() const { return m_cause; }

private:
    ImportError(Kind kind, const QString& name, QString cause);
    Kind m_kind;
    QString m_cause;
};

} // namespace tonequill
