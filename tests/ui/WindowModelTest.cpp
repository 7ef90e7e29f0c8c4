#include "ui/WindowModel.h"

#include "library/delivery/DragStaging.h"
#include "ui/OpenSound.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(WindowModel, TheListLightsUpOnlyForFilesFromElsewhere)
{
    test::OpenSound open;
    const WindowModel model(*open.app, [] {});
    const QUrl own = QUrl::fromLocalFile(DragStaging::root() + u"/ID/Door.wav"_s);
    const QUrl other(u"file:///Bell.wav"_s);
    EXPECT_TRUE(model.invitesDrop({other}));
    EXPECT_FALSE(model.invitesDrop({own}));
    EXPECT_FALSE(model.invitesDrop({other, own}));
    EXPECT_FALSE(model.invitesDrop({QUrl(u"https://example.org/a.wav"_s)}));
    EXPECT_TRUE(model.acceptsDrop({other, own})); // the other one is taken all the same
    EXPECT_FALSE(model.acceptsDrop({own}));
}
