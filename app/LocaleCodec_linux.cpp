#include "app/LocaleCodec.h"

void setLocaleCodec()
{
    // File names are bytes in the locale's encoding. With "UTF-16" each would end at its first zero byte, and
    // Qt aborts at the first directory listing.
}
