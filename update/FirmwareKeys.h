#pragma once

#include <QStringList>

/// Returns the maker's public keys in the form of MinisignKey::parse(). If there are none, signatures are
/// ignored. Each executable defines this function itself, so that nothing can change the keys at run time.
QStringList firmwareKeys();
