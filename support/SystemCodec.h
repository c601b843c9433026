#pragma once

class QTextCodec;

/// Returns the codec of the system's 8-bit texts: the output of command-line tools and the arguments of
/// system calls that take bytes. UTF-8 if Qt has no such codec. May be called from any thread.
///
/// This is not the locale's codec, which is not always 8-bit.
const QTextCodec &systemCodec();
