// Sub-class records: "Cls;SubCls;Name" (TAssetSubClassHdr), extended with the
// third-level entry and share (TAssetSubClass) and with the net asset value
// and yearly returns of a library sub-class (TLibAssetSubClass).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "decl/KvValueLists.h"

namespace kv {

class TAssetSubClassHdr {
public:
    TAssetSubClassHdr() = default;
    TAssetSubClassHdr(std::int32_t cls, std::int32_t subCls, std::string name)
        : Cls(cls), SubCls(subCls), Name(std::move(name)) {}
    virtual ~TAssetSubClassHdr() = default;
    virtual const char* ClassName() const { return "TAssetSubClassHdr"; }

    std::int32_t Cls = 0;
    std::int32_t SubCls = 0;
    std::string Name;

    std::string GetAsString() const;
    // Missing or unreadable numbers read as 0 (SubCls2 as -1).
    void SetAsString(std::string_view text);
    virtual std::unique_ptr<TAssetSubClassHdr> Clone() const;

protected:
    TAssetSubClassHdr(const TAssetSubClassHdr&) = default;
    TAssetSubClassHdr& operator=(const TAssetSubClassHdr&) = default;
    virtual void WriteFields(std::vector<std::string>& f) const;
    virtual void ReadFields(const std::vector<std::string>& f, std::size_t& pos);
};

// + SubCls2 (-1: the sub-class itself) and Share.
class TAssetSubClass : public TAssetSubClassHdr {
public:
    using TAssetSubClassHdr::TAssetSubClassHdr;
    const char* ClassName() const override { return "TAssetSubClass"; }
    std::unique_ptr<TAssetSubClassHdr> Clone() const override;

    std::int32_t SubCls2 = -1;
    double Share = 0;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// + the net asset value and the returns by year (a TIndDblList text).
class TLibAssetSubClass : public TAssetSubClass {
public:
    using TAssetSubClass::TAssetSubClass;
    const char* ClassName() const override { return "TLibAssetSubClass"; }
    std::unique_ptr<TAssetSubClassHdr> Clone() const override;

    double NAV = 0;
    TIndDblList Returns;
    // Compound growth over the years from..to (inclusive) with the stored
    // returns, a missing year counting as 0: prod(1 + r) - 1.
    double CompoundReturn(std::int32_t fromYear, std::int32_t toYear) const;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

} // namespace kv
