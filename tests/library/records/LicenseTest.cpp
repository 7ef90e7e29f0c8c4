#include "library/records/License.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(License, AsksForCreditWhereItIsDue)
{
    for (const QString& due : {u"CC BY"_s, u"CC BY-SA"_s, u"cc by"_s})
        EXPECT_TRUE(License::needsCredit(due)) << due.toStdString();
    for (const QString& quiet : {u"CC0"_s, u"Public domain"_s, QString()})
        EXPECT_FALSE(License::needsCredit(quiet)) << quiet.toStdString();
    EXPECT_FALSE(License::needsCredit(std::nullopt));
}
