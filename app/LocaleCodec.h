#pragma once

/// Sets the codec with which Qt converts text to and from the locale's encoding. Does nothing on Linux.
void setLocaleCodec();
