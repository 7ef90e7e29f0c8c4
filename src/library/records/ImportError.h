#pragma once

#include "base/UserError.h"

namespace tonequill {

// Why a file could not become a sound. Carries the sound's display name.
class ImportError : public UserError {
public:
    enum class Kind { noAudio, unsupported };

    static ImportError noAudio(const QString& name) { return {Kind::noAudio, name}; }
    static ImportError unsupported(const QString& name) { return {Kind::unsupported, name}; }

    Kind kind() const { return m_kind; }

private:
    ImportError(Kind kind, const QString& name);
    Kind m_kind;
};

} // namespace tonequill
