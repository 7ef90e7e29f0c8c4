#pragma once

#include "platform/process/Defaults.h"

#include <QObject>

#include <optional>

namespace tonequill {

// The user's settings; each setter writes through at once. A key that is absent
// has its own default. One thread. The defaults outlive it.
class Settings : public QObject {
    Q_OBJECT

public:
    explicit Settings(Defaults& defaults);

    bool createWithCredits() const { return m_createWithCredits; }
    void setCreateWithCredits(bool value);
    bool shortOnlyByDefault() const { return m_shortOnlyByDefault; }
    void setShortOnlyByDefault(bool value);
    bool hideCreditSounds() const { return m_hideCreditSounds; }
    void setHideCreditSounds(bool value);
    bool alsoFinalCut() const { return m_alsoFinalCut; }
    void setAlsoFinalCut(bool value);
    const std::optional<QString>& saveFolderPath() const { return m_saveFolderPath; }
    void setSaveFolderPath(std::optional<QString> path);
    // The chosen folder while it exists, else the desktop.
    QString saveFolder() const { return saveFolder(m_defaults); }
    static QString saveFolder(const Defaults& defaults); // as it is stored

Q_SIGNALS:
    void changed();

private:
    void write(bool& field, const QString& key, bool value);

    Defaults& m_defaults;
    bool m_createWithCredits;
    bool m_shortOnlyByDefault;
    bool m_hideCreditSounds;
    bool m_alsoFinalCut;
    std::optional<QString> m_saveFolderPath;
};

} // namespace tonequill
