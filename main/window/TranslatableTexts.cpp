// Texts the core keeps in English and the window shows translated: listed
// here so that lupdate finds them.
#include <QtGlobal>

namespace tessary {

[[maybe_unused]] static const char* const kVocabulary[] = {
    // Grid headers.
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Account Type"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Total"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Asset Class"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Value"),
    // Account kinds and result account types.
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Non-Reg."),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "TFSAs"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "RRSPs/RRIFs"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "LIRAs/LIFs"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "DCPs/LRIFs"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "MD Taxable"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "BS Taxable"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "QR Taxable"),
    // Asset classes.
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Short-Term Fixed"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Mid/Long-Term Fixed"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Equities Canada"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Equities U.S."),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Equities Emerging Markets"),
    QT_TRANSLATE_NOOP("tessary::Vocabulary", "Equities Global"),
    // Built-in target mixes.
    QT_TRANSLATE_NOOP("tessary::TPresetsMenu", "Conservative"),
    QT_TRANSLATE_NOOP("tessary::TPresetsMenu", "Balanced"),
    QT_TRANSLATE_NOOP("tessary::TPresetsMenu", "Growth"),
    QT_TRANSLATE_NOOP("tessary::TPresetsMenu", "All equity"),
};

} // namespace tessary
