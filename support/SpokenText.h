#pragma once

#include "support/LanguageUtilities.h"

/// Returns the text for screen readers in the current language. Such names stand beside the code, not in the
/// language tables, which hold what is shown.
inline QString spoken(const char *english, const char *chinese)
{
    const bool isChinese = LanguageUtilities::instance().language() == QLatin1String("zh_CN");
    return QString::fromUtf8(isChinese ? chinese : english);
}
