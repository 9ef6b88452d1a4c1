#include "items/KvFnPortfolio.h"

#include <algorithm>
#include <cmath>

#include "KvSettings.h"
#include "decl/KvDayNumbers.h"
#include "decl/KvModelFormat.h"
#include "entries/KvFnEntries.h"
#include "items/KvPropTable.h"
#include "parties/KvFnParty.h"

namespace kv {

KV_ITEM_CLASS_DEFINE(TPortfolioBase, TFinItem)
KV_ITEM_CLASS_DEFINE(TPortfolioBaseShares, TPortfolioBase)
KV_ITEM_CLASS_DEFINE(TPortfolio, TPortfolioBaseShares)
KV_ITEM_CLASS_DEFINE(TPortfolioX, TPortfolio)
KV_ITEM_CLASS_DEFINE(TPortfolioSeg, TPortfolioX)
KV_ITEM_CLASS_DEFINE(TRetPlan, TPortfolio)
KV_ITEM_CLASS_DEFINE(TRRIF, TRetPlan)
KV_ITEM_CLASS_DEFINE(TLRIF, TRetPlan)
KV_ITEM_CLASS_DEFINE(TDCP, TLRIF)
KV_ITEM_CLASS_DEFINE(TRRSP, TDCP)
KV_ITEM_CLASS_DEFINE(TTFSA, TDCP)
KV_ITEM_CLASS_DEFINE(TFHSA, TDCP)
KV_ITEM_CLASS_DEFINE(TDPSP, TRetPlan)
KV_ITEM_CLASS_DEFINE(TDBP, TRetPlan)
KV_ITEM_CLASS_DEFINE(TIPP, TRetPlan)
KV_ITEM_CLASS_DEFINE(TRESP, TPortfolio)
KV_ITEM_CLASS_DEFINE(TBankAccount, TFinItem)
KV_ITEM_CLASS_DEFINE(TDBPCommute, TFinItem)
KV_ITEM_CLASS_DEFINE(TPortTransIn, TFinItem)
KV_ITEM_CLASS_DEFINE(TRetPlanCon, TFinItem)
KV_ITEM_CLASS_DEFINE(TRetPlanOwnership, TFinItem)

namespace {

std::int32_t YearOfDate(double dayNumber) {
    if (!std::isfinite(dayNumber) || std::abs(dayNumber) > 3.0e6) return 0;
    return static_cast<std::int32_t>(DateOfDayNumber(static_cast<std::int64_t>(std::floor(dayNumber))).Year);
}

std::int32_t PlanningYear(const TLibrarySettings& settings) {
    if (settings.CurrentYear != 0) return settings.CurrentYear;
    return YearOfDate(CurrentPlanningDate(settings));
}

const TParticipant* OwnerOf(const TFinItem& item) {
    const auto id = item.OwnerPartyID();
    return id && item.Model ? item.Model->GetParticipantByID(*id) : nullptr;
}

// A person's last year of salary: position 1 of the first property row, else
// the year the person turns 65.
std::int32_t LastSalaryYear(const TParticipant& p) {
    if (!p.Props.empty() && p.Props[0].size() > 1) {
        std::int32_t year = 0;
        if (TryModelTextToInt(p.Props[0][1], year)) return year;
    }
    return YearOfDate(p.BirthDate) + 65;
}

// The last year a person may contribute to a retirement savings plan.
std::int32_t LastPossibleContributionYear(const TParticipant& p) { return YearOfDate(p.BirthDate) + 71; }

// Tax statuses of a person living with a partner.
bool HasPartnerStatus(std::uint8_t status) { return status == 1 || status == 2; }

// Minimum withdrawal factors for ages 50 to 95.
constexpr double kWDFactors[] = {0.025,  0.0256, 0.0263, 0.027,  0.0278, 0.0286, 0.0294, 0.0303, 0.0313, 0.0323,
                                 0.0333, 0.0345, 0.0357, 0.037,  0.0385, 0.04,   0.0417, 0.0435, 0.0455, 0.0476,
                                 0.05,   0.0528, 0.054,  0.0553, 0.0567, 0.0582, 0.0598, 0.0617, 0.0636, 0.0658,
                                 0.0682, 0.0708, 0.0738, 0.0771, 0.0808, 0.0851, 0.0899, 0.0955, 0.1021, 0.1099,
                                 0.1192, 0.1306, 0.1449, 0.1634, 0.1879, 0.2};
constexpr std::int32_t kFirstFactorAge = 50;
constexpr std::int32_t kLastFactorAge = 95;

double Factor(std::int32_t age) {
    age = std::clamp(age, kFirstFactorAge, kLastFactorAge);
    return kWDFactors[age - kFirstFactorAge];
}

// The rule of the registered plans: exact below 68, the table to 95, then 0.2.
double RetPlanRate(std::int32_t age, std::int32_t year, bool reduce2020) {
    double rate;
    if (age < 68)
        rate = 1.0 / (90 - age);
    else if (age <= kLastFactorAge)
        rate = Factor(age);
    else
        rate = 0.2;
    // A one-year reduction tied to that calendar year alone.
    if (reduce2020 && year == 2020) rate *= 0.75;
    return rate;
}

// The locked-in rule: the table above 50 (the last row past 95), exact at 50 and below.
double LockedInRate(std::int32_t age) { return age > kFirstFactorAge ? Factor(age) : 1.0 / (90 - age); }

const TPropDesc<TPortfolioBase> kPortfolioBaseProps[] = {
    FloatProp("AddFees", &TPortfolioBase::AddFees),
    IntProp("AddFeesPr", &TPortfolioBase::AddFeesPr),
    TextProp("AddFeesPrBr", &TPortfolioBase::AddFeesPrBr),
    FloatProp("PortACB", &TPortfolioBase::PortACB),
    FloatProp("CURate", &TPortfolioBase::CURate),
    IntProp("ConvertOnImport", &TPortfolioBase::ConvertOnImport),
    IntProp("AddFeesFlat", &TPortfolioBase::AddFeesFlat, 1),
};

const TPropDesc<TPortfolio> kPortfolioProps[] = {
    FloatProp("RATE", &TPortfolio::Rate, -1),
    IntProp("ChargeInterest", &TPortfolio::ChargeInterest),
    FloatProp("ChargeInterestPercent", &TPortfolio::ChargeInterestPercent),
    FloatProp("UnGain", &TPortfolio::UnGain),
    IntProp("IsBankingAccount", &TPortfolio::IsBankingAccountValue),
    FlagProp("DEDUCTFEEFROMACC", &TPortfolio::DeductFeeFromAcc, "Yes"),
    TextProp("CGOverTime", &TPortfolio::CGOverTime),
    IntProp("ASSETAUTOWD", &TPortfolio::AssetAutoWD),
    IntProp("RETAUTOWD", &TPortfolio::RetAutoWD),
    IntProp("WDSTART", &TPortfolio::WDStart),
    FloatProp("MaxCredit", &TPortfolio::MaxCredit),
    IntProp("AggrFeeTaxDeductible", &TPortfolio::AggrFeeTaxDeductible),
    IntProp("AggrFeeDeductFromAcc", &TPortfolio::AggrFeeDeductFromAcc),
    TextProp("GrowByYears", &TPortfolio::GrowByYears),
    FloatProp("NOWVAL", &TPortfolio::NowVal),
};

const TPropDesc<TPortfolioX> kPortfolioXProps[] = {
    FloatProp("TransInACB", &TPortfolioX::TransInACB),
    FlagProp("TransferFromTrust", &TPortfolioX::TransferFromTrust, "1"),
    FlagProp("TransferFromMD", &TPortfolioX::TransferFromMD, "1"),
    TextProp("WDRETORD", &TPortfolioX::WDRetOrd),
    IntProp("LiquidateInYear", &TPortfolioX::LiquidateInYear, -1),
    TextProp("slTransferredFromList", &TPortfolioX::TransferredFromList),
};

const TPropDesc<TRetPlan> kRetPlanProps[] = {
    IntProp("YOURCONTYPE", &TRetPlan::YourConType),
    IntProp("EMPCONTYPE", &TRetPlan::EmpConType),
    FloatProp("PreviousYearEndValue", &TRetPlan::PreviousYearEndValue),
    FloatProp("PreviousYearGrow", &TRetPlan::PreviousYearGrow),
    IntProp("WDSTARTSPS", &TRetPlan::WDStartSps),
    IntProp("TYPE", &TRetPlan::Type),
    IntProp("LRIFInitVal", &TRetPlan::LRIFInitVal),
    IntProp("LRIFPrevDep", &TRetPlan::LRIFPrevDep),
    IntProp("LRIFPrevOut", &TRetPlan::LRIFPrevOut),
    IntProp("LRIFPrevAnn", &TRetPlan::LRIFPrevAnn),
    IntProp("LRIFPrevRet", &TRetPlan::LRIFPrevRet),
    FlagProp("PBSA", &TRetPlan::PBSA, "1"),
    FlagProp("PRIF", &TRetPlan::PRIF, "1"),
    FlagProp("AnnuityWithdraw", &TRetPlan::AnnuityWithdraw, "1"),
    TextProp("MANWDYEARS", &TRetPlan::ManWDYears),
    IntProp("STARTYEAR", &TRetPlan::StartYear),
    IntProp("ApplyContribToPrevYear", &TRetPlan::ApplyContribToPrevYear),
    IntProp("PayAnnuityDirectlyToOwner", &TRetPlan::PayAnnuityDirectlyToOwner),
    IntProp("SubjectToMeltdown", &TRetPlan::SubjectToMeltdown),
    IntProp("SubjectToMeltdownLastYear", &TRetPlan::SubjectToMeltdownLastYear),
    IntProp("SubjectToMeltdownFirstYear", &TRetPlan::SubjectToMeltdownFirstYear),
    IntProp("ContributeFromDividends", &TRetPlan::ContributeFromDividends),
    TextProp("lSavedWDValues", &TRetPlan::SavedWDValues),
    TextProp("lSavedWDProps", &TRetPlan::SavedWDProps),
    IntProp("UnlockAge", &TRetPlan::UnlockAge, -1),
    IntProp("AnnuityYear", &TRetPlan::AnnuityYear, -1),
    IntProp("ConvertToType", &TRetPlan::ConvertToType),
};

const TPropDesc<TLRIF> kLRIFProps[] = {
    IntProp("Province", &TLRIF::Province, -1),
    FlagProp("TransFromPension", &TLRIF::TransFromPension, "1"),
};

const TPropDesc<TRRSP> kRRSPProps[] = {IntProp("RRSPTYPE", &TRRSP::RRSPType)};
const TPropDesc<TTFSA> kTFSAProps[] = {TextProp("SavedContributions", &TTFSA::SavedContributions)};
const TPropDesc<TFHSA> kFHSAProps[] = {
    FloatProp("ContributionsToDate", &TFHSA::ContributionsToDate),
    IntProp("WDMethod", &TFHSA::WDMethod),
    IntProp("WDYear", &TFHSA::WDYear),
};

const TPropDesc<TRESP> kRESPProps[] = {
    IntProp("CURCONTRPPL", &TRESP::CurContrPPL),
    IntProp("CURCONTRPPL_V", &TRESP::CurContrPPLV),
    IntProp("WDSTARTCHANGED", &TRESP::WDStartChanged),
    IntProp("SCHOLARSHIP", &TRESP::Scholarship),
    IntProp("FamilyRESP", &TRESP::FamilyRESP),
    IntProp("CreatedTabPartyID", &TRESP::CreatedTabPartyID, -1),
    FloatProp("PastCESG", &TRESP::PastCESG),
    FloatProp("PastWithdrawals", &TRESP::PastWithdrawals),
    IntProp("AutoWDLastYear", &TRESP::AutoWDLastYear, -1),
    FloatProp("PastQESI", &TRESP::PastQESI),
};

const TPropDesc<TBankAccount> kBankProps[] = {
    IntProp("ASSETAUTOWD", &TBankAccount::AssetAutoWD),
    IntProp("RETAUTOWD", &TBankAccount::RetAutoWD),
    IntProp("WDSTART", &TBankAccount::WDStart),
};

const TPropDesc<TDBPCommute> kDBPCommuteProps[] = {
    FloatProp("TransferDate", &TDBPCommute::TransferDate), IntProp("PortID", &TDBPCommute::PortID, -1),
    IntProp("LIRAID", &TDBPCommute::LIRAID, -1),           FloatProp("PortValue", &TDBPCommute::PortValue),
    FloatProp("LIRAValue", &TDBPCommute::LIRAValue),
};

const TPropDesc<TPortTransIn> kPortTransInProps[] = {
    IntProp("ContribCash", &TPortTransIn::ContribCash),
    IntProp("AutoContrib", &TPortTransIn::AutoContrib),
    IntProp("Freq", &TPortTransIn::Freq),
    IntProp("Month", &TPortTransIn::Month, 12),
};

const TPropDesc<TRetPlanCon> kRetPlanConProps[] = {
    IntProp("Freq", &TRetPlanCon::Freq),
    IntProp("Month", &TRetPlanCon::Month, 1),
    IntProp("Day", &TRetPlanCon::Day, 1),
    IntProp("Maximized", &TRetPlanCon::Maximized),
    IntProp("ContribCash", &TRetPlanCon::ContribCash),
    FloatProp("MaxVal", &TRetPlanCon::MaxVal),
    IntProp("2RATES", &TRetPlanCon::TwoRates),
    IntProp("ContribCashFromYear", &TRetPlanCon::ContribCashFromYear),
    IntProp("MaximizedP", &TRetPlanCon::MaximizedP),
};

// The benefit formula of a defined-benefit plan and its non-zero defaults.
struct TFormulaKey {
    const char* Key;
    double Default;
};
constexpr TFormulaKey kDBPFormula[] = {
    {"WdStartDt", 0},     {"BENCALCTYPE", 0},    {"PACALCTYPE", 0},       {"BENINPTYPE", 0},  {"BENBSALRATE", 0},
    {"BENESALRATE", 0},   {"CONTYPE", -1},       {"CONSALPCNT", 0},       {"CONBSALRATE", 0}, {"CONCURVAL", 0},
    {"CONESALRATE", 0},   {"CPPTYPE", 0},        {"CPPVAL", 100},         {"CPPFAC", 100},    {"ERB_RATE1", 0},
    {"ERB_AGE1", 0},      {"ERB_RATE2", 0},      {"ERB_UR_AGE0", 0},      {"ERB_UR_AGE1", 0}, {"ERB_UR_AGE2", 0},
    {"ERB_UR_YEARS1", 0}, {"ERB_UR_FACTOR2", 0}, {"ERB_UR_YEARS3", 0},    {"FLATBEN", 0},     {"PREVEMPINC", 0},
    {"FULLBENDATE", 0},   {"INCFINAL", 1},       {"INCBEST", 1},          {"BONUS", 0},       {"CPP", 0},
    {"ERB_UR0", 0},       {"ERB_UR1", 0},        {"ERB_UR2", 0},          {"ERB_UR3", 0},     {"ManualBenefCalc", 0},
    {"OVERRIDE", 0},      {"TOPUP", 0},          {"NORMRETDATE", 0},      {"PLNSTART", 0},    {"PLNEND", 0},
    {"SUCCTYPE", 0},      {"SUCC0TYPE", 0},      {"SUCCVAL0", 0},         {"SUCCVAL1", 0},    {"SUCCPOSTVAL", 0},
    {"TOPUPDBP", 0},      {"CONTRIBENDYEAR", 0}, {"CONTRIBSTARTYEAR", 0},
};
const TPropDesc<TDBP> kDBPListProps[] = {
    TextProp("BenIndTypes", &TDBP::BenIndTypes),
    TextProp("BenIndVals", &TDBP::BenIndVals),
    TextProp("BenOvrdVals", &TDBP::BenOvrdVals),
    TextProp("ManualBenefits", &TDBP::ManualBenefits),
};

} // namespace

double CurrentPlanningDate(const TLibrarySettings& settings) { return settings.PlanningDate; }

TAccountKind AccountKindOf(const TFinItem& item) {
    switch (item.EntryID()) {
        case 948:
        case 2232:
        case 6105: return TAccountKind::NonReg;
        case 2333: return TAccountKind::TFSA;
        case 1239: {
            // The RRSP kind belongs to TRRSP: an item of another class under this
            // entry is an ordinary RRSP whatever texts it carries.
            const auto* rrsp = dynamic_cast<const TRRSP*>(&item);
            return rrsp && rrsp->Kind() == TRRSPKind::LockedIn ? TAccountKind::LIRA : TAccountKind::RRSP;
        }
        case 1307: return TAccountKind::RRSP;
        case 5098: return TAccountKind::LIRA;
        case 1132:
        case 1375: return TAccountKind::DCP;
        default: return TAccountKind::None;
    }
}

bool IsBankingAccount(const TFinItem& item) {
    const auto* portfolio = dynamic_cast<const TPortfolio*>(&item);
    return portfolio && portfolio->IsBankingAccount();
}

void TPortfolioBase::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kPortfolioBaseProps);
    StatementDate = statementDateRead_ = SpecProps.GetFloat("StatementDate", CurrentPlanningDate(Settings()));
    AddFeesTaxDed = addFeesTaxDedRead_ = SpecProps.GetInt("AddFeesTaxDed", Settings().DefaultFeesTaxDeductible);
}

void TPortfolioBase::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kPortfolioBaseProps);
    // Both defaults change with the date and the settings: a changed value is
    // written whatever it is, an unchanged one stays as it was read.
    if (!SameFloat(StatementDate, statementDateRead_)) SpecProps.SetFloat("StatementDate", StatementDate);
    if (AddFeesTaxDed != addFeesTaxDedRead_) SpecProps.SetInt("AddFeesTaxDed", AddFeesTaxDed);
    statementDateRead_ = StatementDate;
    addFeesTaxDedRead_ = AddFeesTaxDed;
}

void TPortfolioBaseShares::DecodeSpecProps() {
    TPortfolioBase::DecodeSpecProps();
    CurHold = SpecProps.GetText("CURHOLD");
}

void TPortfolioBaseShares::EncodeSpecProps() {
    TPortfolioBase::EncodeSpecProps();
    if (CurHold == SpecProps.GetText("CURHOLD")) return;
    if (CurHold.empty())
        SpecProps.Remove("CURHOLD");
    else
        SpecProps.Set("CURHOLD", CurHold);
}

namespace {
std::unique_ptr<TPortAllocation> AllocationOf(const TSpecProps& props) {
    const auto text = props.Get(kAllocationProperty);
    if (!text) return nullptr;
    auto a = std::make_unique<TPortAllocation>(0);
    a->SetAsString(*text);
    return a;
}
} // namespace

void TPortfolio::DecodeSpecProps() {
    TPortfolioBaseShares::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kPortfolioProps);
    Allocation = AllocationOf(SpecProps);
}

void TPortfolio::EncodeSpecProps() {
    TPortfolioBaseShares::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kPortfolioProps);
    // Compared through the text form, so a stored text that reads back the
    // same (other spelling of a number, fields past the eight) is kept.
    const auto stored = AllocationOf(SpecProps);
    if (!Allocation)
        SpecProps.Remove(kAllocationProperty);
    else if (!stored || stored->GetAsString() != Allocation->GetAsString())
        SpecProps.Set(kAllocationProperty, Allocation->GetAsString());
}

double TPortfolio::GetNowValue(bool recalculate) {
    // The field is written only when the item is saved: a query leaves the
    // properties as they were read.
    if (recalculate) RecalcNowValue();
    return NowVal;
}

void TPortfolio::RecalcNowValue() {
    const double ofYear = GetValueForYear(PlanningYear(Settings()));
    NowVal = ofYear != 0 ? ofYear : Value;
}

double TPortfolio::GetValueForYear(std::int32_t year) const {
    const std::int32_t itemID = SpecProps.GetInt("ProjValueItemID", 0);
    if (itemID != 0 && Model) {
        // The projection value item, searched over the whole model.
        std::vector<const TFinItem*> stack;
        for (const auto& top : Model->Items()) stack.push_back(top.get());
        while (!stack.empty()) {
            const TFinItem* it = stack.back();
            stack.pop_back();
            if (it->ID == itemID && it != this) return it->PayValueOfYear(year);
            for (const auto& c : it->Children) stack.push_back(c.get());
        }
    }
    const TFinItem* child = ValueChild();
    return child ? child->PayValueOfYear(year) : 0;
}

void TPortfolioX::DecodeSpecProps() {
    TPortfolio::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kPortfolioXProps);
}

void TPortfolioX::EncodeSpecProps() {
    TPortfolio::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kPortfolioXProps);
}

void TRetPlan::DecodeSpecProps() {
    TPortfolio::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kRetPlanProps);
}

void TRetPlan::EncodeSpecProps() {
    TPortfolio::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kRetPlanProps);
}

const TFinItem* TRetPlan::ESPPItem() const {
    const std::int32_t id = ESPPEntryID();
    for (const auto& c : Children)
        if (c->EntryID() == id) return c.get();
    return nullptr;
}

double TRetPlan::ValueInYear(std::int32_t year) const {
    double value = TFinItem::ValueInYear(year);
    if (const TFinItem* espp = ESPPItem()) value += espp->ValueInYear(year);
    return value;
}

double TRetPlan::CalcWDMinRate(std::int32_t age, std::int32_t year) const { return RetPlanRate(age, year, true); }

std::string TRetPlan::GetTransItemsEntryIDs(bool) const { return SpecProps.GetText("TransEntries"); }

bool TRetPlan::ShowForMode(int mode) const {
    if (mode != 19) return TPortfolio::ShowForMode(mode);
    switch (EntryID()) {
        case 2333:
        case 1239:
        case 1307:
        case 1132:
        case 5098: return true;
        default: return false;
    }
}

double TRRIF::CalcWDMinRate(std::int32_t age, std::int32_t year) const {
    if (AnnuityTakesAll(year)) return 0;
    return TRetPlan::CalcWDMinRate(age, year);
}

void TLRIF::DecodeSpecProps() {
    TRetPlan::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kLRIFProps);
}

void TLRIF::EncodeSpecProps() {
    TRetPlan::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kLRIFProps);
}

double TLRIF::CalcWDMinRate(std::int32_t age, std::int32_t year) const {
    if (ConvertToType != 0) return TRetPlan::CalcWDMinRate(age, year);
    if (AnnuityTakesAll(year)) return 0;
    if (OwnerPartyID() && year < WDStart) return 0;
    return LockedInRate(age);
}

namespace {
std::string WithPensionTransfers(std::string ids) {
    if (!ids.empty()) ids += ",";
    return ids + "5098";
}
} // namespace

std::string TLRIF::GetTransItemsEntryIDs(bool flag) const {
    std::string ids = TRetPlan::GetTransItemsEntryIDs(flag);
    return TransFromPension && !flag ? WithPensionTransfers(ids) : ids;
}

std::string TDCP::GetTransItemsEntryIDs(bool flag) const {
    std::string ids = TRetPlan::GetTransItemsEntryIDs(flag);
    return TransFromPension && !flag && ConvertToType == 0 ? WithPensionTransfers(ids) : ids;
}

std::string TDCP::ClassGroupName() const { return EntryName() + "s"; }

std::int32_t TDCP::LastPlanContributionYear() const {
    if (const TParticipant* owner = OwnerOf(*this)) return LastPossibleContributionYear(*owner);
    return PlanningYear(Settings()) - 1;
}

const char* TRRSP::KindLabel(std::int32_t rrspType) {
    switch (rrspType) {
        case 1: return "Locked-In RRSP";
        case 2: return "Spousal RRSP";
        case 3: return "RRSP-ESPP";
        default: return "";
    }
}

std::string TRRSP::ClassGroupName() const { return "RRSPs"; }

void TRRSP::DecodeSpecProps() {
    TDCP::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kRRSPProps);
    UnusedLimit.SetAsString(SpecProps.GetText("lstRRSPUnusedLimit"));
}

void TRRSP::EncodeSpecProps() {
    TDCP::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kRRSPProps);
    const std::string limits = UnusedLimit.GetAsString();
    TIndDblList stored;
    stored.SetAsString(SpecProps.GetText("lstRRSPUnusedLimit"));
    if (limits == stored.GetAsString()) return;
    if (limits.empty())
        SpecProps.Remove("lstRRSPUnusedLimit");
    else
        SpecProps.Set("lstRRSPUnusedLimit", limits);
}

double TRRSP::CalcWDMinRate(std::int32_t age, std::int32_t year) const {
    if (ConvertToType != 0) return TRetPlan::CalcWDMinRate(age, year);
    if (OwnerPartyID() && year < WDStart) return 0;
    return LockedInRate(age);
}

void TRRSP::AfterLoaded() {
    TDCP::AfterLoaded();
    Links.fill(nullptr);
    for (const auto& child : Children) {
        if (!child->Entry) continue;
        switch (child->Entry->KindCode()) {
            case -35: Links[0] = child.get(); break;
            case -36: Links[1] = child.get(); break;
            case -37: Links[2] = child.get(); break;
            case -42: Links[3] = child.get(); break;
            default: break;
        }
        // Imported from a corporate file: that child is not shown.
        if (child->EntryID() == -5318 && SpecProps.GetFlag("IMPFROMBS", "1")) child->SpecProps.Set("VISIBLE", "0");
    }
}

const TParticipant* TRRSP::FindContributor() const {
    const TParticipant* owner = OwnerOf(*this);
    if (!owner || Kind() != TRRSPKind::Spousal || !Model || !HasPartnerStatus(owner->TaxStatus)) return owner;
    for (const auto& p : Model->Participants())
        if (p.get() != owner && p->Role == 1 && HasPartnerStatus(p->TaxStatus)) return p.get();
    return owner;
}

std::int32_t TRRSP::MaxEndYear() const {
    const std::int32_t stored = SpecProps.GetInt("MaxEndYear", 0);
    if (stored != 0) return stored;
    const TParticipant* owner = OwnerOf(*this);
    return owner ? LastPossibleContributionYear(*owner) : PlanningYear(Settings());
}

TContributionYears TRRSP::CalcLastConYears() const {
    TContributionYears y;
    y.LastPlanContribution = LastPlanContributionYear();
    const TParticipant* owner = OwnerOf(*this);
    switch (Kind()) {
        case TRRSPKind::LockedIn:
        case TRRSPKind::ESPP: y.LastContribution = owner ? LastSalaryYear(*owner) : PlanningYear(Settings()) - 1; break;
        case TRRSPKind::Spousal: {
            const TParticipant* spouse = FindContributor();
            y.LastContribution = spouse && spouse != owner ? LastPossibleContributionYear(*spouse) + 1 : 0;
            if (y.LastContribution == 0) y.LastContribution = PlanningYear(Settings()) - 1;
            break;
        }
        default:
            y.LastContribution = owner ? LastPossibleContributionYear(*owner) + 1 : PlanningYear(Settings()) - 1;
            break;
    }
    y.LastContributionCapped = std::min(y.LastContribution, MaxEndYear());
    return y;
}

bool TRRSP::CanConvertTo(std::int32_t type) const {
    // A locked-in plan cannot become an ordinary income fund.
    return !(type == 2 && Kind() == TRRSPKind::LockedIn);
}

void TRRSP::SetDefaultConvertToType() {
    if (Kind() != TRRSPKind::LockedIn && Kind() != TRRSPKind::ESPP) return;
    if (ConvertToType == 2 && !CanConvertTo(2))
        ConvertToType = 3;
    else if (EntryID() == 895)
        ConvertToType = 2;
}

void TRRSP::SetDefConNames() {
    if (Kind() != TRRSPKind::Spousal) return;
    const bool french = French();
    if (Links[0])
        Links[0]->Name = french ? "Contributions du conjoint en " + Name : "Spousal " + Name + " contributions";
    if (Links[1]) Links[1]->Name = french ? "Contributions du conjoint en %" : "Spousal % contributions";
}

void TTFSA::DecodeSpecProps() {
    TDCP::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kTFSAProps);
}

void TTFSA::EncodeSpecProps() {
    TDCP::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kTFSAProps);
}

void TFHSA::DecodeSpecProps() {
    TDCP::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kFHSAProps);
}

void TFHSA::EncodeSpecProps() {
    TDCP::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kFHSAProps);
}

double TDPSP::CalcWDMinRate(std::int32_t age, std::int32_t year) const { return RetPlanRate(age, year, false); }

double TDBP::FormulaValue(std::string_view key) const {
    for (const auto& [k, v] : Formula)
        if (k == key) return v;
    return 0;
}

void TDBP::DecodeSpecProps() {
    TRetPlan::DecodeSpecProps();
    Formula.clear();
    for (const TFormulaKey& f : kDBPFormula) Formula.emplace_back(f.Key, SpecProps.GetFloat(f.Key, f.Default));
    DecodeProps(*this, SpecProps, kDBPListProps);
}

void TDBP::EncodeSpecProps() {
    TRetPlan::EncodeSpecProps();
    for (const TFormulaKey& f : kDBPFormula) {
        const double v = FormulaValue(f.Key);
        if (SameFloat(v, SpecProps.GetFloat(f.Key, f.Default))) continue;
        if (v != f.Default)
            SpecProps.SetFloat(f.Key, v);
        else
            SpecProps.Remove(f.Key);
    }
    EncodeProps(*this, SpecProps, kDBPListProps);
}

void TRESP::DecodeSpecProps() {
    TPortfolio::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kRESPProps);
    for (int i = 0; i < 4; ++i) Sch[i] = SpecProps.GetFloat("SCH" + std::to_string(i + 1), 0);
}

void TRESP::EncodeSpecProps() {
    TPortfolio::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kRESPProps);
    for (int i = 0; i < 4; ++i) {
        const std::string key = "SCH" + std::to_string(i + 1);
        if (SameFloat(Sch[i], SpecProps.GetFloat(key, 0))) continue;
        if (Sch[i] != 0)
            SpecProps.SetFloat(key, Sch[i]);
        else
            SpecProps.Remove(key);
    }
}

void TBankAccount::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kBankProps);
}

void TBankAccount::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kBankProps);
}

std::string TBankAccount::ClassGroupName() const {
    std::string name = TFinItem::ClassGroupName();
    // The entry names its account group by code ("ACC"); a named group wins.
    if (Entry && Model && Model->Entries()) {
        const std::string code = Entry->SpecProp("ACC");
        if (!code.empty())
            for (const auto& acc : Model->Entries()->AccGroups())
                if (acc->Code() == code && !acc->Name().empty()) return acc->Name();
    }
    return name;
}

void TDBPCommute::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kDBPCommuteProps);
}

void TDBPCommute::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kDBPCommuteProps);
}

void TPortTransIn::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kPortTransInProps);
}

void TPortTransIn::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kPortTransInProps);
}

void TRetPlanCon::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kRetPlanConProps);
}

void TRetPlanCon::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kRetPlanConProps);
}

} // namespace kv
