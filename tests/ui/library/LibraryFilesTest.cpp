#include "ui/library/LibraryFiles.h"

#include "library/delivery/DragStaging.h"
#include "ui/OpenSound.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(LibraryFiles, TheListLightsUpOnlyForFilesFromElsewhere)
{
    test::OpenSound open;
    const LibraryListModel list(*open.app);
    const LibraryFiles files(*open.app, list, [] {});
    const QUrl own = QUrl::fromLocalFile(DragStaging::root() + u"/ID/Door.wav"_s);
    const QUrl other(u"file:///Bell.wav"_s);
    EXPECT_TRUE(files.invitesDrop({other}));
    EXPECT_FALSE(files.invitesDrop({own}));
    EXPECT_FALSE(files.invitesDrop({other, own}));
    EXPECT_FALSE(files.invitesDrop({QUrl(u"https://example.org/a.wav"_s)}));
    EXPECT_TRUE(files.acceptsDrop({other, own})); // the other one is taken all the same
    EXPECT_FALSE(files.acceptsDrop({own}));
}
