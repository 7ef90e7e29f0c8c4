#pragma once

#include "platform/desktop/OtherApps.h"

#include <QStringList>

namespace tonequill::test {

// One other application, which can go away between two questions.
class FakeOtherApps final : public OtherApps {
public:
    bool has(const QString& bundle) const override { return isThere && bundle == QStringLiteral("com.apple.FinalCut"); }

    bool open(const QString& path, const QString& bundle) override
    {
        if (!has(bundle))
            return false;
        opened << path;
        return true;
    }

    void reveal(const QString& path) override { revealed << path; }
    void showFolder(const QString& path) override { shownFolders << path; }

    bool isThere = true;
    QStringList opened;
    QStringList revealed;
    QStringList shownFolders;
};

} // namespace tonequill::test
