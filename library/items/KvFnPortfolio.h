// Items that hold invested money: portfolios, registered plans, the education
// plan and the bank account, with their settings kept in special properties.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "decl/KvValueLists.h"
#include "items/KvFnFinItems.h"
#include "items/KvPortAllocation.h"

namespace kv {

// The special property that holds a portfolio's allocation in its text form
// (docs/formats/allocation.md).
inline constexpr const char* kAllocationProperty = "Allocation";

// The five account kinds of the allocator.
enum class TAccountKind : int { None = 0, NonReg = 1, TFSA = 2, RRSP = 3, LIRA = 4, DCP = 5 };

// The account kind of an investment account, by its entry identifier (and, for
// an RRSP entry whose item is a TRRSP, its kind); None for any other entry.
TAccountKind AccountKindOf(const TFinItem& item);

// Whether the item serves as the client's banking account. Only portfolios
// have the setting: any other item carrying the text reads the default, false.
bool IsBankingAccount(const TFinItem& item);

// The entry identifiers the import looks for, in its order.
inline constexpr std::array<std::int32_t, 9> kImportEntryIDs = {948, 2232, 6105, 2333, 1239, 1132, 1307, 5098, 1375};

// The planning date of the settings: the caller's today, a day number. The
// library never reads the clock.
double CurrentPlanningDate(const TLibrarySettings& settings);

class TPortfolioBase : public TFinItem {
    KV_ITEM_CLASS_BODY(TPortfolioBase, TFinItem)
public:
    double StatementDate = 0;
    double AddFees = 0;
    std::int32_t AddFeesPr = 0;
    std::string AddFeesPrBr;
    std::int32_t AddFeesTaxDed = 0;
    double PortACB = 0;
    double CURate = 0;
    std::int32_t ConvertOnImport = 0;
    std::int32_t AddFeesFlat = 1;

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;

private:
    // What decoding gave: both defaults move with the date and the settings.
    std::int32_t addFeesTaxDedRead_ = 0;
    double statementDateRead_ = 0;
};

class TPortfolioBaseShares : public TPortfolioBase {
    KV_ITEM_CLASS_BODY(TPortfolioBaseShares, TPortfolioBase)
public:
    std::string CurHold; // "CURHOLD"

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TPortfolio : public TPortfolioBaseShares {
    KV_ITEM_CLASS_BODY(TPortfolio, TPortfolioBaseShares)
public:
    double Rate = -1; // -1: no rate given
    std::int32_t ChargeInterest = 0;
    double ChargeInterestPercent = 0;
    double UnGain = 0;
    std::int32_t IsBankingAccountValue = 0;
    bool DeductFeeFromAcc = false; // "Yes"
    std::string CGOverTime;
    std::int32_t AssetAutoWD = 0;
    std::int32_t RetAutoWD = 0;
    std::int32_t WDStart = 0;
    double MaxCredit = 0;
    std::int32_t AggrFeeTaxDeductible = 0;
    std::int32_t AggrFeeDeductFromAcc = 0;
    std::string GrowByYears;
    double NowVal = 0;
    // The asset-class allocation ("Allocation"); null when the item has none.
    std::unique_ptr<TPortAllocation> Allocation;

    bool IsBankingAccount() const { return IsBankingAccountValue != 0; }
    bool HasRate() const { return Rate != -1; }

    // "NOWVAL", after recalculating it when asked.
    double GetNowValue(bool recalculate);
    // The value now: the planning year's value (GetValueForYear), or the
    // typed Value when that year has none.
    virtual void RecalcNowValue();

    // The value of a year: from the projection value item ("ProjValueItemID")
    // when there is one, else from the value child.
    double GetValueForYear(std::int32_t year) const;

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;

    // Writes the value on the item and on its first two value children.
    void SetValue(double value);
    // The primary account: entry 948, or 6213 in personal models (kinds 0
    // and 4), 6242 in trust models (kind 2).
    bool IsPrimaryAccount(std::uint8_t modelKind) const;
};

class TPortfolioX : public TPortfolio {
    KV_ITEM_CLASS_BODY(TPortfolioX, TPortfolio)
public:
    double TransInACB = 0;
    bool TransferFromTrust = false; // "1"
    bool TransferFromMD = false;    // "1"
    std::string WDRetOrd;
    std::int32_t LiquidateInYear = -1;
    std::string TransferredFromList;

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TPortfolioSeg : public TPortfolioX {
    KV_ITEM_CLASS_BODY(TPortfolioSeg, TPortfolioX)
};

class TRetPlan : public TPortfolio {
    KV_ITEM_CLASS_BODY(TRetPlan, TPortfolio)
public:
    std::int32_t YourConType = 0, EmpConType = 0;
    double PreviousYearEndValue = 0, PreviousYearGrow = 0;
    std::int32_t WDStartSps = 0, Type = 0;
    std::int32_t LRIFInitVal = 0, LRIFPrevDep = 0, LRIFPrevOut = 0, LRIFPrevAnn = 0, LRIFPrevRet = 0;
    bool PBSA = false, PRIF = false, AnnuityWithdraw = false; // "1"
    std::string ManWDYears;
    std::int32_t StartYear = 0, ApplyContribToPrevYear = 0, PayAnnuityDirectlyToOwner = 0;
    std::int32_t SubjectToMeltdown = 0, SubjectToMeltdownLastYear = 0, SubjectToMeltdownFirstYear = 0,
                 ContributeFromDividends = 0;
    std::string SavedWDValues, SavedWDProps;
    std::int32_t UnlockAge = -1;
    // The year an annuity takes the plan's full value ("AnnuityYear"), -1 none.
    std::int32_t AnnuityYear = -1;
    // What the plan converts to ("ConvertToType"), 0 by default.
    std::int32_t ConvertToType = 0;

    // Owned lists of the plan.
    std::vector<std::string> Strings;
    TIndDblList Lists[3];
    TIndStrList TextList;

    virtual std::int32_t ESPPEntryID() const { return 6139; }
    // The linked share-purchase plan item: a child under ESPPEntryID().
    const TFinItem* ESPPItem() const;

    // The base value of the year plus the linked share-purchase plan's.
    double ValueInYear(std::int32_t year) const override;

    // Fraction of the value that must be withdrawn at the age, in the year.
    virtual double CalcWDMinRate(std::int32_t age, std::int32_t year) const;
    bool AnnuityTakesAll(std::int32_t year) const { return AnnuityWithdraw && AnnuityYear == year; }

    // "TransEntries", with "5098" appended where the plan takes pension transfers.
    virtual std::string GetTransItemsEntryIDs(bool flag) const;
    // In display mode 19 the beneficiaries panel shows only for the plans
    // that have beneficiaries.
    bool ShowForMode(int mode) const override;

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TRRIF : public TRetPlan {
    KV_ITEM_CLASS_BODY(TRRIF, TRetPlan)
public:
    double CalcWDMinRate(std::int32_t age, std::int32_t year) const override;
};

class TLRIF : public TRetPlan {
    KV_ITEM_CLASS_BODY(TLRIF, TRetPlan)
public:
    std::int32_t Province = -1;
    bool TransFromPension = false; // "TransFromPension" = "1"

    double CalcWDMinRate(std::int32_t age, std::int32_t year) const override;
    std::string GetTransItemsEntryIDs(bool flag) const override;

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TDCP : public TLRIF {
    KV_ITEM_CLASS_BODY(TDCP, TLRIF)
public:
    std::string ClassGroupName() const override;
    std::string GetTransItemsEntryIDs(bool flag) const override;
    // The last year contributions go into the plan: the owner's last possible
    // contribution year, or the planning year - 1 without an owner.
    virtual std::int32_t LastPlanContributionYear() const;
};

enum class TRRSPKind : std::int32_t { Ordinary = 0, LockedIn = 1, Spousal = 2, ESPP = 3 };

struct TContributionYears {
    std::int32_t LastPlanContribution = 0;
    std::int32_t LastContribution = 0;
    std::int32_t LastContributionCapped = 0; // not past the plan's maximum end year
};

class TRRSP : public TDCP {
    KV_ITEM_CLASS_BODY(TRRSP, TDCP)
public:
    std::int32_t RRSPType = 0;
    TIndDblList UnusedLimit; // "lstRRSPUnusedLimit"
    // Children linked by the kind code of their entry: -35, -36, -37, -42.
    std::array<TFinItem*, 4> Links{};

    TRRSPKind Kind() const { return static_cast<TRRSPKind>(RRSPType); }
    static const char* KindLabel(std::int32_t rrspType);

    std::string ClassGroupName() const override;
    double CalcWDMinRate(std::int32_t age, std::int32_t year) const override;
    void AfterLoaded() override;

    // The party that contributes: the owner, or a spousal plan's owner's partner.
    const TParticipant* FindContributor() const;
    TContributionYears CalcLastConYears() const;
    // Plan end year ("MaxEndYear"), by default the year the owner turns 71.
    std::int32_t MaxEndYear() const;
    bool CanConvertTo(std::int32_t type) const;
    void SetDefaultConvertToType();
    // Names of a spousal plan's contribution lines (links 1 and 2).
    void SetDefConNames();

    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TTFSA : public TDCP {
    KV_ITEM_CLASS_BODY(TTFSA, TDCP)
public:
    std::string SavedContributions;
    std::int32_t ESPPEntryID() const override { return 6210; }
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TFHSA : public TDCP {
    KV_ITEM_CLASS_BODY(TFHSA, TDCP)
public:
    double ContributionsToDate = 0;
    std::int32_t WDMethod = 0, WDYear = 0;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TDPSP : public TRetPlan {
    KV_ITEM_CLASS_BODY(TDPSP, TRetPlan)
public:
    double CalcWDMinRate(std::int32_t age, std::int32_t year) const override;
};

class TDBP : public TRetPlan {
    KV_ITEM_CLASS_BODY(TDBP, TRetPlan)
public:
    // The benefit formula: every key with its number (defaults 0 but
    // CONTYPE -1, CPPVAL 100, CPPFAC 100, INCFINAL 1, INCBEST 1) and the lists.
    std::vector<std::pair<std::string, double>> Formula;
    std::string BenIndTypes, BenIndVals, BenOvrdVals, ManualBenefits;
    double FormulaValue(std::string_view key) const;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TIPP : public TRetPlan {
    KV_ITEM_CLASS_BODY(TIPP, TRetPlan)
};

class TRESP : public TPortfolio {
    KV_ITEM_CLASS_BODY(TRESP, TPortfolio)
public:
    std::int32_t CurContrPPL = 0, CurContrPPLV = 0, WDStartChanged = 0;
    double Sch[4] = {0, 0, 0, 0};
    std::int32_t Scholarship = 0, FamilyRESP = 0, CreatedTabPartyID = -1;
    double PastCESG = 0, PastWithdrawals = 0;
    std::int32_t AutoWDLastYear = -1;
    double PastQESI = 0;
    TSharesList Beneficiaries;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TBankAccount : public TFinItem {
    KV_ITEM_CLASS_BODY(TBankAccount, TFinItem)
public:
    std::int32_t AssetAutoWD = 0, RetAutoWD = 0, WDStart = 0;
    std::string ClassGroupName() const override;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TDBPCommute : public TFinItem {
    KV_ITEM_CLASS_BODY(TDBPCommute, TFinItem)
public:
    double TransferDate = 0;
    std::int32_t PortID = -1, LIRAID = -1;
    double PortValue = 0, LIRAValue = 0;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TPortTransIn : public TFinItem {
    KV_ITEM_CLASS_BODY(TPortTransIn, TFinItem)
public:
    std::int32_t ContribCash = 0, AutoContrib = 0, Freq = 0, Month = 12;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TRetPlanCon : public TFinItem {
    KV_ITEM_CLASS_BODY(TRetPlanCon, TFinItem)
public:
    std::int32_t Freq = 0, Month = 1, Day = 1, Maximized = 0, ContribCash = 0;
    double MaxVal = 0;
    std::int32_t TwoRates = 0, ContribCashFromYear = 0, MaximizedP = 0;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

class TRetPlanOwnership : public TFinItem {
    KV_ITEM_CLASS_BODY(TRetPlanOwnership, TFinItem)
};

} // namespace kv
