#include "items/KvAssetSubClasses.h"

#include <utility>

#include "decl/KvModelFormat.h"
#include "items/KvAllocationFields.h"

namespace kv {

using fields::FieldAt;
using fields::FloatAt;
using fields::IntAt;
using fields::JoinFields;
using fields::SplitFields;

std::string TAssetSubClassHdr::GetAsString() const {
    std::vector<std::string> f;
    WriteFields(f);
    return JoinFields(f);
}

void TAssetSubClassHdr::SetAsString(std::string_view text) {
    const std::vector<std::string> f = SplitFields(text);
    std::size_t pos = 0;
    ReadFields(f, pos);
}

std::unique_ptr<TAssetSubClassHdr> TAssetSubClassHdr::Clone() const {
    return std::unique_ptr<TAssetSubClassHdr>(new TAssetSubClassHdr(*this));
}

void TAssetSubClassHdr::WriteFields(std::vector<std::string>& f) const {
    f.push_back(IntToModelText(Cls));
    f.push_back(IntToModelText(SubCls));
    f.push_back(Name);
}

void TAssetSubClassHdr::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    Cls = IntAt(f, pos, 0);
    SubCls = IntAt(f, pos + 1, 0);
    Name = std::string(FieldAt(f, pos + 2));
    pos += 3;
}

std::unique_ptr<TAssetSubClassHdr> TAssetSubClass::Clone() const {
    return std::unique_ptr<TAssetSubClassHdr>(new TAssetSubClass(*this));
}

void TAssetSubClass::WriteFields(std::vector<std::string>& f) const {
    TAssetSubClassHdr::WriteFields(f);
    f.push_back(IntToModelText(SubCls2));
    f.push_back(FloatToModelText(Share));
}

void TAssetSubClass::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TAssetSubClassHdr::ReadFields(f, pos);
    SubCls2 = IntAt(f, pos, -1);
    Share = FloatAt(f, pos + 1, 0);
    pos += 2;
}

std::unique_ptr<TAssetSubClassHdr> TLibAssetSubClass::Clone() const {
    return std::unique_ptr<TAssetSubClassHdr>(new TLibAssetSubClass(*this));
}

double TLibAssetSubClass::CompoundReturn(std::int32_t fromYear, std::int32_t toYear) const {
    double g = 1;
    for (int i = 0; i < Returns.Count(); ++i) {
        const auto& e = Returns.Items(i);
        if (e.Ind >= fromYear && e.Ind <= toYear) g *= 1 + e.Val;
    }
    return g - 1;
}

void TLibAssetSubClass::WriteFields(std::vector<std::string>& f) const {
    TAssetSubClass::WriteFields(f);
    f.push_back(FloatToModelText(NAV));
    f.push_back(Returns.GetAsString());
}

void TLibAssetSubClass::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TAssetSubClass::ReadFields(f, pos);
    NAV = FloatAt(f, pos, 0);
    Returns.SetAsString(FieldAt(f, pos + 1));
    pos += 2;
}

} // namespace kv
