// The class a party record makes, and the beneficiary key of its property
// arrays.
#include <gtest/gtest.h>

#include "parties/KvFnParty.h"

namespace {

TEST(Parties, ClassByRoleTypeAndKind) {
    struct Case { std::uint8_t kind, role, type; const char* cls; };
    const Case cases[] = {
        {0, 1, 0, "TParticipant"},     {0, 40, 150, "TCorpParticipant"}, {2, 60, 150, "TCorpParticipant"},
        {0, 60, 150, "TCorporation"},  {1, 60, 0, "TParticipant"},       {0, 0, 150, "TCorporation"},
        {0, 0, 160, "TJointVenture"},  {0, 0, 161, "TJointVenture"},     {0, 0, 170, "TTrust"},
        {0, 2, 171, "TParticipant"},
    };
    for (const Case& c : cases)
        EXPECT_STREQ(kv::CreateParty(c.kind, 5, c.role, c.type)->ClassName(), c.cls)
            << int(c.kind) << "/" << int(c.role) << "/" << int(c.type);
    EXPECT_NE(dynamic_cast<kv::TCorporation*>(kv::CreateParty(0, 1, 0, 170).get()), nullptr);
}

TEST(Parties, BeneficiaryKeyFromThePropertyArrays) {
    struct Case { kv::TPropArrays props; std::int32_t key; };
    const Case cases[] = {
        {{}, 9}, {{{}}, 9}, {{{""}}, 9}, {{{"x1"}}, 9}, {{{"12"}}, 12}, {{{"-3", "a"}, {"b"}}, -3}, {{{" 4"}}, 9},
    };
    for (const Case& c : cases) {
        kv::TCorporation p(9);
        p.DecodeProps(c.props);
        EXPECT_EQ(p.BenefKey, c.key);
        EXPECT_EQ(p.EncodeProps(), c.props);   // unchanged: written as read
        p.BenefKey = 5;
        const kv::TPropArrays out = p.EncodeProps();
        EXPECT_GE(out.size(), 3u);
        EXPECT_GE(out[1].size(), 30u);   // a corporation writes at least 30 strings there
        EXPECT_EQ(out[0][0], "5");
    }
}

} // namespace
