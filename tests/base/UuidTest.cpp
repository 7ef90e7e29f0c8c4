#include "base/Uuid.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(Uuid, IsWrittenInCanonicalUpperCase)
{
    const auto id = uuidFromText(u"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9");
    ASSERT_TRUE(id);
    EXPECT_EQ(uuidText(*id), u"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9"_s);
}

TEST(Uuid, RefusesEveryOtherShape)
{
    for (const QString& text : {u""_s, u"{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}"_s, u"0a1b2c3d4e5f60718293a4b5c6d7e8f9"_s,
                                u"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8fz"_s, u"00000000-0000-0000-0000-00000000000g"_s,
                                u"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f"_s})
        EXPECT_FALSE(uuidFromText(text)) << text.toStdString();
}

TEST(Uuid, TheOneOfZerosIsAnIdentityAsWell)
{
    const auto id = uuidFromText(u"00000000-0000-0000-0000-000000000000");
    ASSERT_TRUE(id);
    EXPECT_EQ(*id, QUuid());
}
