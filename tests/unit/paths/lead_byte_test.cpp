#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

TEST(LeadByte, HookHoldsTheSuitesTestAtLoad)
{
    const zvMultiByteLeadTest atLoad = zvSetIsMultiByteLead(&isNoLead);
    EXPECT_EQ(&qxIsMultiByteLead, atLoad);
    EXPECT_EQ(&isNoLead, zvSetIsMultiByteLead(atLoad));
}

TEST(LeadByte, AnswersWhatTheSuiteAnswersForEveryByte)
{
    for (int value = 0; value < 256; ++value) {
        const unsigned char byte = static_cast<unsigned char>(value);
        EXPECT_EQ(qxIsMultiByteLead(byte), zvIsMultiByteLead(byte)) << value;
    }
}

TEST(LeadByte, ForwardsToTheInstalledTest)
{
    const LeadByteScope scope(&isLead932);
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(isLead932(static_cast<unsigned char>(byte)), zvIsMultiByteLead(static_cast<unsigned char>(byte)));
}

TEST(LeadByte, NullTestMeansNoLeadBytes)
{
    const LeadByteScope scope(nullptr);
    EXPECT_FALSE(zvIsMultiByteLead(0x95));
    EXPECT_TRUE(zvMBCSSafeString("A/b") == "a\\B");
}
