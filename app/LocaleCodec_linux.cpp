#include "app/LocaleCodec.h"

void setLocaleCodec()
{
    // File names here are bytes in the locale's own encoding; "UTF-16" would cut each at its first
    // zero byte, and the toolkit aborts at the first directory listing.
}
