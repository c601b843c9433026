#pragma once

/// Sets the codec of Qt's conversions to and from the locale's encoding. Does nothing on Linux.
void setLocaleCodec();
