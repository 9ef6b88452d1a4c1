#include <gtest/gtest.h>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Rebalance.h"
#include "core/Totals.h"

using namespace tessary;

namespace {

constexpr int MD = 1, TFSA = 4, RRSP = 5;                    // account types
constexpr int STF = 1, EQC = 3, EQU = 4, EQG = 6, MLF = 2;   // classes

struct Amount {
    int type, cls;
    double value;
};

TClassAmounts Amounts(std::initializer_list<Amount> amounts) {
    TClassAmounts h;
    for (const Amount& a : amounts) h.Add(a.type, a.cls, a.value);
    return h;
}

TTargets Plan(std::vector<int> types, std::vector<int> classes, std::initializer_list<Amount> amounts) {
    return {std::move(types), std::move(classes), Amounts(amounts)};
}

// A taxable account planned at 1,000: 200, 300 and 500.
const TTargets kTaxable = Plan({MD}, {STF, MLF, EQC}, {{MD, STF, 200}, {MD, MLF, 300}, {MD, EQC, 500}});

struct Case {
    const char* name;
    TTargets plan;
    TClassAmounts held;
    TRebalanceOptions options;
    double cash, unplaced;
    std::vector<double> trades;   // of the first account, in its class order
};

} // namespace

TEST(Rebalance, HandWorkedAccounts) {
    const Case cases[] = {
        {"trades settle the cash", kTaxable, Amounts({{MD, STF, 300}, {MD, EQC, 100}}), {}, 600, 0, {-100, 300, 400}},
        // 5 % of 1,000 is 50: a trade of exactly 50 is skipped, one of 50.01 is not.
        {"band edge", kTaxable, Amounts({{MD, STF, 250}, {MD, MLF, 249.99}, {MD, EQC, 500}}), {5, false}, 0.01, -50,
         {0, 50.01, 0}},
        // Shortfalls 200 and 300 with 450 to place: level 25 fills 175 and 275;
        // the 50 held too much of equities stays.
        {"no sales, cash below the shortfalls", kTaxable, Amounts({{MD, EQC, 550}}), {0, true}, 450, 0, {175, 275, 0}},
        {"no sales, cash equal to the shortfalls", kTaxable, Amounts({{MD, STF, 100}, {MD, MLF, 300}, {MD, EQC, 400}}),
         {0, true}, 200, 0, {100, 0, 100}},
        {"no sales, money to raise: nothing moves", kTaxable, Amounts({{MD, STF, 900}, {MD, EQC, 600}}), {0, true},
         -500, -500, {0, 0, 0}},
        {"no sales: the band does not apply", kTaxable, Amounts({{MD, STF, 190}, {MD, MLF, 300}, {MD, EQC, 500}}),
         {50, true}, 10, 0, {10, 0, 0}},
        {"a TFSA still sells when taxable accounts do not",
         Plan({TFSA}, {STF, EQC}, {{TFSA, STF, 100}, {TFSA, EQC, 100}}), Amounts({{TFSA, STF, 200}}), {0, true}, 0, 0,
         {-100, 100}},
        {"band on the target total, sells too", Plan({RRSP}, {STF, EQC}, {{RRSP, STF, 500}, {RRSP, EQC, 500}}),
         Amounts({{RRSP, STF, 540}, {RRSP, EQC, 390}}), {10, false}, 70, -40, {0, 110}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto accounts = Rebalance(c.plan, c.held, c.options);
        ASSERT_EQ(accounts.size(), 1u);
        const TAccountTrades& a = accounts.front();
        EXPECT_NEAR(a.Cash, c.cash, 1e-9);
        EXPECT_NEAR(a.Unplaced, c.unplaced, 1e-9);
        ASSERT_EQ(a.Classes.size(), c.trades.size());
        for (std::size_t i = 0; i < c.trades.size(); ++i) EXPECT_NEAR(a.Classes[i].Trade, c.trades[i], 1e-9) << i;
    }
}

TEST(Rebalance, AccountsAndClassesOutsideThePlanFollowIt) {
    // Column order RRSP before MD is kept; holdings add up per pair.
    const TTargets plan = Plan({RRSP, MD}, {EQC, STF}, {{RRSP, EQC, 10}, {MD, STF, 20}});
    const TClassAmounts held = Amounts({{TFSA, EQU, 10}, {MD, EQG, 5}, {MD, STF, 1}, {MD, STF, 2}});
    const auto accounts = Rebalance(plan, held, {});
    ASSERT_EQ(accounts.size(), 3u);
    EXPECT_EQ(accounts[0].AccountType, RRSP);
    EXPECT_EQ(accounts[1].AccountType, MD);
    EXPECT_EQ(accounts[2].AccountType, TFSA);

    auto classesOf = [](const TAccountTrades& a) {
        std::vector<int> c;
        for (const auto& t : a.Classes) c.push_back(t.AssetClass);
        return c;
    };
    EXPECT_EQ(classesOf(accounts[1]), (std::vector<int>{EQC, STF, EQG}));
    EXPECT_EQ(classesOf(accounts[2]), (std::vector<int>{EQC, STF, EQU}));
    EXPECT_EQ(accounts[1].Classes[1].Current, 3);
    EXPECT_EQ(accounts[1].Classes[2].Trade, -5);   // a class the plan does not target is sold
    EXPECT_EQ(accounts[2].Target, 0);
    EXPECT_EQ(accounts[2].Cash, -10);

    const TTradeTotals totals = TotalsOf(accounts);
    EXPECT_EQ(totals.Target, 30);
    EXPECT_EQ(totals.Current, 18);
    EXPECT_EQ(totals.Bought, 10 + 17);
    EXPECT_EQ(totals.Sold, -15);
}

TEST(Rebalance, TargetsComeFromTheCalculatedResult) {
    TGrid accounts = MakeAccountsGrid(), classes = MakeClassesGrid(), result = MakeResultGrid();
    LoadAccountsCsv("h\nNon-Reg.,600,0,0\nRRSPs/RRIFs,400,0,0\n", accounts);
    // Equities 40 %, fixed income 60 % in two rows of the same class: they add.
    LoadClassesCsv("h\nEquities Canada,40\nShort-Term Fixed,30\nShort-Term Fixed,30\n", classes);
    CalculateAllocation(accounts, classes, result, kDesignAddAccWidth);

    const TTargets t = ReadTargets(result);
    EXPECT_EQ(t.AccountTypes, (std::vector<int>{MD, RRSP}));
    EXPECT_EQ(t.Classes, (std::vector<int>{EQC, STF}));
    EXPECT_NEAR(t.Amounts.Get(MD, EQC), 400, 1e-9);
    EXPECT_NEAR(t.Amounts.Get(MD, STF), 200, 1e-9);
    EXPECT_NEAR(t.Amounts.Get(RRSP, EQC), 0, 1e-9);
    EXPECT_NEAR(t.Amounts.Get(RRSP, STF), 400, 1e-9);
}

TEST(Rebalance, HoldingsCsv) {
    const TClassAmounts h = ParseHoldingsCsv("\xEF\xBB\xBFtype,class,amount\r\nTFSAs,Equities U.S., 12.5 \r\n\r\n"
                                             "TFSAs,Equities U.S.,-2.5\nMD Taxable,Equities Global,\n"
                                             "DCPs/LRIFs,Short-Term Fixed,1e3,\n",
                                             "h.csv");
    EXPECT_EQ(h.Get(TFSA, EQU), 10);
    EXPECT_TRUE(h.Named(MD, EQG));
    EXPECT_EQ(h.Get(MD, EQG), 0);
    EXPECT_EQ(h.Get(7, STF), 1000);
    EXPECT_FALSE(h.Named(RRSP));

    const struct {
        const char* text;
        const char* message;
    } refused[] = {
        {"h\n\nTFSA,Equities U.S.,1\n", "line 3: unknown account type \"TFSA\""},
        {"h\nTFSAs,\"Equities\nU.S.\",1\nTFSAs,Bonds,1\n", "line 2: unknown asset class"},
        {"h\n\"TFSAs\",\"Equities U.S.\",\"1\"\nTFSAs,Equities Global,$100\n", "line 3: the amount \"$100\""},
        {"h\nTFSAs,Equities U.S.,\"1,000\"\n", "line 2: the amount \"1,000\" is not a plain number"},
        {"h\nTFSAs,Equities U.S.,inf\n", "not a plain number"},
        {"h\nTFSAs,Equities U.S.,1e999\n", "too large"},
        {"h\nTFSAs,Equities U.S.,1,2\n", "line 2: more than three fields"},
    };
    for (const auto& r : refused) {
        SCOPED_TRACE(r.text);
        try {
            ParseHoldingsCsv(r.text, "h.csv");
            ADD_FAILURE() << "accepted";
        } catch (const ERebalanceInput& e) {
            EXPECT_NE(std::string(e.what()).find(r.message), std::string::npos) << e.what();
            EXPECT_EQ(std::string(e.what()).rfind("\"h.csv\"", 0), 0u) << e.what();
        }
    }
}
