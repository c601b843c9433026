#pragma once

/// Sets the codec in which the toolkit talks to the system, where the platform bears it.
void setLocaleCodec();
