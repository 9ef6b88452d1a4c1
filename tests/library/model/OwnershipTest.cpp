// Ownership lookups on solutions written to disk and loaded back.
#include <gtest/gtest.h>

#include <algorithm>

#include "KvSettings.h"
#include "ModelTestUtil.h"
#include "items/KvFnItemClasses.h"
#include "model/KvFnOwnership.h"

using namespace kvtest;
namespace D = kv::DemoEntry;

namespace {

struct Owner {
    std::int32_t party;
    std::uint8_t code;
};

class Ownership : public ::testing::Test {
protected:
    void Party(std::int32_t id, std::uint8_t role, std::uint8_t type = 0, std::int32_t benefKey = 0) {
        auto p = kv::CreateParty(kind, id, role, type);
        p->LastName = "Party " + std::to_string(id);
        if (benefKey) p->BenefKey = benefKey;
        writer->AddParticipant(std::move(p));
    }
    // A raw record whose ownership list is given (nullopt: none at all).
    kv::TFinItem* Item(kv::TFinItem* parent, std::int32_t entry, std::int32_t id,
                       std::optional<std::vector<Owner>> owners, std::initializer_list<std::string> props = {}) {
        auto item = std::make_unique<kv::TFinItem>(s.Entry(entry), writer.get(), id);
        if (owners) {
            item->Shares = std::make_unique<kv::TSharesList>();
            for (const Owner& o : *owners) item->Shares->AddShare(nullptr, o.party, o.code);
        }
        for (const auto& p : props) item->SpecProps.Add(p);
        return parent ? parent->AddChild(std::move(item)) : writer->Add(std::move(item));
    }
    kv::TModelData& Load() {
        writer->Save();
        loaded = s.NewModel(kind, path);
        loaded->Load();
        return *loaded;
    }
    std::vector<std::int32_t> Owned(std::int32_t party, std::uint8_t flag = 0) {
        kv::FindByEntryIDOwned(*loaded, nullptr, kv::kImportEntryIDs, flag, party);
        std::vector<std::int32_t> ids;
        for (const kv::TFinItem* i : loaded->ResultList) ids.push_back(i->ID);
        return ids;
    }

    std::uint8_t kind = 0;
    TempDir dir;
    Surroundings s{0, dir};
    std::string path = dir.File("FinItems.dat");
    std::unique_ptr<kv::TModelData> writer = s.NewModel(0, path);
    std::unique_ptr<kv::TModelData> loaded;
};

struct OwnCase {
    const char* name;
    std::int32_t entry;
    std::optional<std::vector<Owner>> owners;
    std::vector<std::string> props;
    std::int32_t party;
    bool owned;
};

TEST_F(Ownership, SingleItemTestByBitsRolesAndFlags) {
    // Parties 1 and 2 have role code 1; 3 and 5 do not.
    Party(1, 1);
    Party(2, 1);
    Party(3, 0, 150);
    Party(5, 0);
    const std::int32_t Inv = D::InvestAccount;   // group 1: not whole
    const OwnCase cases[] = {
        {"Bit2RoleOne", Inv, std::vector<Owner>{{1, 2}}, {}, 1, true},
        {"Bit1AloneWithSwitchOff", Inv, std::vector<Owner>{{1, 1}}, {}, 1, false},
        {"Bit2OtherRole", Inv, std::vector<Owner>{{3, 2}}, {}, 3, true},
        {"OtherEntryHasRoleOne", Inv, std::vector<Owner>{{3, 2}, {1, 2}}, {}, 3, false},
        {"RoleOneEntryForTheRoleOneParty", Inv, std::vector<Owner>{{3, 2}, {1, 2}}, {}, 1, true},
        {"UnderThePrimaryAccountEntry", D::NonReg, std::vector<Owner>{{3, 2}, {1, 2}}, {}, 3, true},
        {"Bit4IsNotOwnership", Inv, std::vector<Owner>{{3, 4}}, {}, 3, false},
        {"AnyPartyTakesBit4", Inv, std::vector<Owner>{{3, 4}}, {}, -1, true},
        {"AnyPartyNeedsBit4", Inv, std::vector<Owner>{{3, 2}}, {}, -1, false},
        {"CodeWithSeveralBits", Inv, std::vector<Owner>{{1, 6}, {2, 6}}, {}, 2, true},
        {"EmptyListIsEverybodys", Inv, std::vector<Owner>{}, {}, 5, true},
        {"NoListIsEverybodys", Inv, std::nullopt, {}, 5, true},
        {"NotInTheList", Inv, std::vector<Owner>{{1, 2}}, {}, 5, false},
        {"OwnerPartyFallback", Inv, std::vector<Owner>{{1, 2}}, {"OwnerID=5"}, 5, true},
        {"UnknownPartyNeverMatches", Inv, std::vector<Owner>{{999, 2}}, {}, 999, false},
        {"WholeGroupZero", D::Investments, std::vector<Owner>{{3, 2}, {1, 2}}, {}, 3, true},
    };
    int id = 1;
    for (const OwnCase& c : cases) {
        auto* item = Item(nullptr, c.entry, id++, c.owners);
        for (const auto& p : c.props) item->SpecProps.Add(p);
    }
    Load();
    for (int i = 0; i < static_cast<int>(std::size(cases)); ++i)
        EXPECT_EQ(kv::ItemOwnedBy(*loaded->Get(i), cases[i].party), cases[i].owned) << cases[i].name;
}

TEST_F(Ownership, ChildrenFallBackToTheNearestListAndToThePrimaryParent) {
    Party(1, 1);
    Party(3, 0, 150);
    auto* parent = Item(nullptr, D::InvestAccount, 1, std::vector<Owner>{{3, 2}});
    auto* child = Item(parent, D::TFSA, 2, std::vector<Owner>{});
    Item(child, D::RRSP, 3, std::nullopt);
    auto* primary = Item(nullptr, D::NonReg, 4, std::vector<Owner>{{3, 2}, {1, 2}});
    Item(primary, D::TFSA, 5, std::vector<Owner>{});   // judged by the parent's list, under 948
    Load();
    const kv::TFinItem& grandchild = *loaded->Get(0)->Children[0]->Children[0];
    EXPECT_EQ(grandchild.OwnershipList(), loaded->Get(0)->Shares.get());
    EXPECT_TRUE(kv::ItemOwnedBy(grandchild, 3));
    EXPECT_FALSE(kv::ItemOwnedBy(grandchild, 1));
    EXPECT_TRUE(kv::ItemOwnedBy(*loaded->Get(1)->Children[0], 3));
}

TEST_F(Ownership, ImportSearchKeepsPreOrderAndSkipsExcludedItems) {
    Party(1, 1);
    Party(2, 1);
    auto* a = Item(nullptr, D::InvestAccount, 10, std::vector<Owner>{{1, 2}});
    Item(a, D::TFSA, 11, std::vector<Owner>{{1, 2}});
    Item(a, D::Residence, 12, std::vector<Owner>{{1, 2}});   // not an import entry
    Item(nullptr, D::RRSP, 13, std::vector<Owner>{{2, 2}});
    Item(nullptr, D::LIRA, 14, std::vector<Owner>{{1, 2}}, {"isExclude=1"});
    Item(nullptr, D::DCP, 15, std::vector<Owner>{{1, 2}}, {"isExclude=yes"});
    Load();
    EXPECT_EQ(Owned(1), (std::vector<std::int32_t>{10, 11, 15}));
    EXPECT_EQ(Owned(1, 1), (std::vector<std::int32_t>{10, 11, 14, 15}));
    EXPECT_EQ(Owned(2), (std::vector<std::int32_t>{13}));
    EXPECT_EQ(kv::FindByEntryIDOwned(*loaded, kv::kImportEntryIDs, 0, 2)->ID, 13);
    EXPECT_EQ(kv::FindByEntryIDOwned(*loaded, kv::kImportEntryIDs, 0, 77), nullptr);
}

TEST_F(Ownership, ListTestSwitches) {
    Party(1, 1);
    Party(3, 0, 150);
    Party(5, 0);
    Item(nullptr, D::InvestAccount, 1, std::vector<Owner>{{1, 1}});
    Item(nullptr, D::InvestAccount, 2, std::vector<Owner>{{3, 2}, {5, 4}});
    Item(nullptr, D::InvestAccount, 3, std::vector<Owner>{{3, 2}, {1, 4}});
    Item(nullptr, D::InvestAccount, 4, std::vector<Owner>{{3, 4}, {5, 2}});
    Item(nullptr, D::InvestAccount, 5, std::vector<Owner>{{3, 2}, {5, 1}});
    Load();
    auto list = [&](int i) { return loaded->Get(i)->Shares.get(); };
    struct Case { int item; std::int32_t party; bool whole, joint, bit1; bool want; };
    const Case cases[] = {
        {0, 1, false, false, true, true},    // bit 1 counts with its switch
        {0, 1, false, false, false, false},
        {1, 3, false, true, false, true},    // joint: holds bit 2, no role-1 entry among bits 2/4
        {2, 3, false, true, false, false},   // joint: a role-1 party carries bit 4
        {3, 3, false, true, false, false},   // joint: the party holds only bit 4
        {3, -1, false, true, false, false},  // party -1 holds no entry of its own
        {4, 3, false, true, false, true},    // one joint entry: the ordinary rule
        {2, 3, false, false, false, false},  // without the joint flag the role-1 entry decides
        {2, 3, true, false, false, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(kv::ListOwnedBy(list(c.item), c.party, c.whole, c.joint, c.bit1, *s.settings), c.want)
            << "item " << c.item << " party " << c.party;
    s.settings->AnyParty = true;
    EXPECT_TRUE(kv::ListOwnedBy(list(0), -1, false, false, false, *s.settings));
}

TEST_F(Ownership, CommonSharesFraction) {
    kind = 1;
    s = Surroundings(1, dir);
    writer = s.NewModel(1, path);
    Party(1, 1);
    Party(2, 1);
    Party(10, 0, 150);
    Party(11, 0, 150);
    Party(12, 0, 150);
    Party(13, 0, 0);   // not a corporation
    auto* header = Item(nullptr, D::Business, 100, std::vector<Owner>{{10, 2}});
    Item(header, D::CorpShares, 101, std::vector<Owner>{{10, 2}}, {"ShareClass=A", "ShareCount=1000", "AsCommon=1"});
    Item(nullptr, D::CorpShares, 102, std::vector<Owner>{{10, 2}}, {"ShareClass=P", "ShareCount=500"});
    Item(nullptr, D::CorpShares, 103, std::vector<Owner>{{11, 2}}, {"ShareClass=X", "ShareCount=300", "AsCommon=1"});
    Item(nullptr, D::CorpShares, 104, std::vector<Owner>{{13, 2}}, {"ShareClass=Y", "ShareCount=10", "AsCommon=1"});
    auto holding = [&](std::int32_t id, std::int32_t holder, std::int32_t corp, std::int32_t cls, const char* held) {
        Item(nullptr, D::SharesHeld, id, std::vector<Owner>{{holder, 2}},
             {"CorpID=" + std::to_string(corp), "ShareClassID=" + std::to_string(cls), std::string("SharesHeld=") + held});
    };
    holding(201, 1, 10, 101, "250");     // common shares of 10, class nested under a header
    holding(202, 1, 10, 102, "100");     // preferred: not common
    holding(203, 1, 11, 103, "50");      // another corporation
    holding(204, 1, 11, 101, "20");      // names 11 with a class of 10: counted for 11, only the named corporation is checked
    holding(205, 2, 10, 101, "1500");    // more than issued: not capped
    holding(206, 2, 10, 999, "5");       // no such class
    holding(207, 1, 13, 104, "5");       // party 13 is no corporation
    Load();
    struct Case { std::int32_t corp, holder; double want; };
    const Case cases[] = {{10, 1, 0.25}, {10, 2, 1.5}, {11, 1, 70.0 / 300}, {12, 1, 0}, {10, 3, 0}, {13, 1, 0}};
    for (const Case& c : cases)
        EXPECT_DOUBLE_EQ(kv::GetProcCommonSharesOwned(*loaded, c.corp, c.holder), c.want) << c.corp << "/" << c.holder;
}

TEST_F(Ownership, TrustCapitalPercentFirstBeneficiaryWins) {
    kind = 2;
    s = Surroundings(2, dir);
    writer = s.NewModel(2, path);
    Party(1, 1);
    Party(2, 1, 0, 77);
    Party(20, 0, 170);
    Party(21, 0, 170);
    auto benef = [&](std::int32_t id, std::int32_t trust, std::int32_t key, std::int32_t pct) {
        Item(nullptr, D::CapitalBenef, id, std::vector<Owner>{{trust, 2}},
             {"BenefKey=" + std::to_string(key), "CapitalPercent=" + std::to_string(pct)});
    };
    benef(301, 20, 1, 40);
    benef(302, 20, 77, 25);
    benef(303, 20, 1, 99);
    benef(304, 21, 2, 10);
    Load();
    EXPECT_EQ(loaded->GetParticipantByID(2)->BenefKey, 77);
    struct Case { std::int32_t key, trust, want; };
    const Case cases[] = {{1, 20, 40}, {77, 20, 25}, {2, 20, 0}, {2, 21, 10}, {1, 21, 0}, {5, 22, 0}};
    for (const Case& c : cases)
        EXPECT_EQ(kv::GetPartyTrustBenefCapitalPercent(*loaded, c.key, c.trust), c.want) << c.key << "/" << c.trust;
}

} // namespace
