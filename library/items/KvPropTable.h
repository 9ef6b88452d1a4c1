// Special properties described as tables: key, type, default and the field
// they fill. One table per class serves both decoding and encoding, so the two
// cannot drift apart.
#pragma once

#include <cstdint>
#include <string>

#include "items/KvFnFinItems.h"

namespace kv {

// Equal, or both not a number: an unchanged NaN is no change.
inline bool SameFloat(double a, double b) { return a == b || (a != a && b != b); }

template <class C>
struct TPropDesc {
    enum class Type { Int, Float, Text, Flag };
    const char* Key;
    Type Kind;
    std::int32_t C::*IntField = nullptr;
    double C::*FloatField = nullptr;
    std::string C::*TextField = nullptr;
    bool C::*FlagField = nullptr;
    std::int32_t IntDefault = 0;
    double FloatDefault = 0;
    const char* Literal = nullptr; // a flag is true exactly when the text equals it
};

template <class C>
constexpr TPropDesc<C> IntProp(const char* key, std::int32_t C::*field, std::int32_t def = 0) {
    TPropDesc<C> d{key, TPropDesc<C>::Type::Int};
    d.IntField = field;
    d.IntDefault = def;
    return d;
}

template <class C>
constexpr TPropDesc<C> FloatProp(const char* key, double C::*field, double def = 0) {
    TPropDesc<C> d{key, TPropDesc<C>::Type::Float};
    d.FloatField = field;
    d.FloatDefault = def;
    return d;
}

template <class C>
constexpr TPropDesc<C> TextProp(const char* key, std::string C::*field) {
    TPropDesc<C> d{key, TPropDesc<C>::Type::Text};
    d.TextField = field;
    return d;
}

template <class C>
constexpr TPropDesc<C> FlagProp(const char* key, bool C::*field, const char* literal) {
    TPropDesc<C> d{key, TPropDesc<C>::Type::Flag};
    d.FlagField = field;
    d.Literal = literal;
    return d;
}

// A missing or unreadable value takes the table's default.
template <class C, std::size_t N>
void DecodeProps(C& obj, const TSpecProps& props, const TPropDesc<C> (&table)[N]) {
    using T = typename TPropDesc<C>::Type;
    for (const auto& d : table) {
        switch (d.Kind) {
            case T::Int: obj.*d.IntField = props.GetInt(d.Key, d.IntDefault); break;
            case T::Float: obj.*d.FloatField = props.GetFloat(d.Key, d.FloatDefault); break;
            case T::Text: obj.*d.TextField = props.GetText(d.Key); break;
            case T::Flag: obj.*d.FlagField = props.GetFlag(d.Key, d.Literal); break;
        }
    }
}

// A value the program did not change keeps the text it was read in (or its
// absence): what the item decodes from its properties now is what it holds.
// A changed value is written, or removed when it is the default, an empty
// text or a false flag.
template <class C, std::size_t N>
void EncodeProps(const C& obj, TSpecProps& props, const TPropDesc<C> (&table)[N]) {
    using T = typename TPropDesc<C>::Type;
    for (const auto& d : table) {
        switch (d.Kind) {
            case T::Int: {
                const std::int32_t v = obj.*d.IntField;
                if (v == props.GetInt(d.Key, d.IntDefault)) break;
                if (v != d.IntDefault)
                    props.SetInt(d.Key, v);
                else
                    props.Remove(d.Key);
                break;
            }
            case T::Float: {
                const double v = obj.*d.FloatField;
                if (SameFloat(v, props.GetFloat(d.Key, d.FloatDefault))) break;
                if (!SameFloat(v, d.FloatDefault))
                    props.SetFloat(d.Key, v);
                else
                    props.Remove(d.Key);
                break;
            }
            case T::Text: {
                const std::string& v = obj.*d.TextField;
                if (v == props.GetText(d.Key)) break;
                if (!v.empty())
                    props.Set(d.Key, v);
                else
                    props.Remove(d.Key);
                break;
            }
            case T::Flag:
                if (obj.*d.FlagField == props.GetFlag(d.Key, d.Literal)) break;
                if (obj.*d.FlagField)
                    props.Set(d.Key, d.Literal);
                else
                    props.Remove(d.Key);
                break;
        }
    }
}

} // namespace kv
