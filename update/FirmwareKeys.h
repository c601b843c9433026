#pragma once

#include <QStringList>

/// Returns the maker's public keys, each as MinisignKey::parse() takes it. Without any, signatures are not
/// looked at. Each executable defines this function itself, so that nothing can change the keys at run time.
QStringList firmwareKeys();
