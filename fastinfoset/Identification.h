#pragma once

#include <string_view>

// How a document starts (ITU-T Rec. X.891, 12.3 and 12.6).

namespace ZuXmlLib16::detail {

/// The XML declarations that may stand first, in the order of the standard: those that FInfoDecl
/// counts from 1 on.
constexpr std::string_view kFastInfosetDeclarations[] = {
    "<?xml encoding='finf'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
};

/// What stands behind the declaration, if there is one: the format and its version.
constexpr std::string_view kFastInfosetIdentification("\xE0\x00\x00\x01", 4);

}  // namespace ZuXmlLib16::detail
