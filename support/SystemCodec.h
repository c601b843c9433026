#pragma once

class QTextCodec;

/// Returns the codec for the system's 8-bit texts: the output of command-line tools and the arguments of
/// system calls that take bytes. Returns the one for UTF-8 if Qt has no such codec. May be called from any
/// thread.
///
/// The codec of the locale would be wrong here, because it is not always an 8-bit codec.
const QTextCodec &systemCodec();
